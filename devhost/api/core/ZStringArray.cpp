// The core library's array of texts.
#include "host/core/ZStringArray.h"

#include "devhost/util/Guarded.h"
#include "devhost/util/Statuses.h"

using devhost::guarded;

namespace {

ZStatus outOfRange() {
    return devhost::invalid("the index is outside the array");
}

} // namespace

ZStringArray::ZStringArray(unsigned count, const ZString &value, ZStatus *ReturnStatus) {
    devhost::report(ReturnStatus, guarded([&] { elements_.assign(count, value); }));
}

ZStatus ZStringArray::setLength(unsigned count) {
    return guarded([&] { changeLogicalSizeTo(count); });
}

ZStatus ZStringArray::append(const ZString &value) {
    return guarded([&] { elements_.push_back(value); });
}

ZStatus ZStringArray::insert(const ZString &value, unsigned index) {
    if (index > length())
        return outOfRange();
    return guarded([&] { elements_.insert(elements_.begin() + index, value); });
}

ZStatus ZStringArray::remove(unsigned index) {
    if (index >= length())
        return outOfRange();
    elements_.erase(elements_.begin() + index);
    return ZStatus();
}

ZStatus ZStringArray::clear() {
    elements_.clear();
    return ZStatus();
}

ZStatus ZStringArray::set(const ZString &value, unsigned index) {
    if (index >= length())
        return outOfRange();
    return guarded([&] { elements_[index] = value; });
}

ZStatus ZStringArray::copy(const ZStringArray &other) {
    return guarded([&] { elements_ = other.elements_; });
}

ZString ZStringArray::join(const ZString &separator) const {
    ZString joined;
    for (unsigned i = 0; i < length(); ++i) {
        if (i > 0)
            joined += separator;
        joined += (*this)[i];
    }
    return joined;
}
