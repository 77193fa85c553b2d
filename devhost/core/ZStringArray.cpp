// The core library's array of texts.
#include "host/core/ZStringArray.h"

#include <exception>

namespace {

ZStatus outOfRange() {
    return ZStatus(ZStatus::kInvalidParameter, "the index is outside the array");
}

template <class Change>
ZStatus guarded(Change change) noexcept {
    try {
        change();
        return ZStatus();
    } catch (const std::exception &) {
        return ZStatus::kInsufficientMemory;
    }
}

} // namespace

ZStringArray::ZStringArray(unsigned count, const ZString &value, ZStatus *ReturnStatus) {
    const ZStatus status = guarded([&] { elements_.assign(count, value); });
    if (ReturnStatus)
        *ReturnStatus = status;
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
