// SPDX-License-Identifier: MIT
// The uniform parameters of hardware shaders.
#include "host/render/ZUniformParameter.h"

#include "devhost/api/render/DrawSemantics.h"
#include "devhost/scene/SceneGraph.h"
#include "devhost/session/RenderSession.h"
#include "devhost/util/Guarded.h"
#include "devhost/util/Terminal.h"
#include "host/core/ZPlug.h"
#include "host/core/ZStatus.h"
#include "host/core/ZStringArray.h"
#include "host/render/ZDrawContext.h"
#include "host/render/ZGeometryList.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <vector>

using devhost::AttributeValue;
using devhost::DrawState;
using devhost::scene;

namespace {

constexpr unsigned long kMostValues = 1ul << 24;

DrawState stateOf(const ZGeometryList &list) {
    const auto &settings = devhost::renderSession().settings;
    return {list.objectToWorldMatrix(), list.viewMatrix(), list.projectionMatrix(), settings.width,
            settings.height};
}

DrawState stateOf(const ZHWRender::ZDrawContext &context) {
    return {context.worldMatrix(), context.viewMatrix(), context.projectionMatrix(),
            context.width(), context.height()};
}

int toInt(double value) {
    if (std::isnan(value))
        return 0;
    return int(std::clamp(value, double(std::numeric_limits<int>::min()),
                          double(std::numeric_limits<int>::max())));
}

/// What a parameter reads as. One of the two says nothing, depending on the parameter's type.
struct Value {
    std::vector<double> numbers;
    ZString text;
    bool operator==(const Value &other) const {
        return numbers == other.numbers && text == other.text;
    }
};

/// An attribute of a node of the scene; none where the node is kNoNode.
struct Attribute {
    devhost::NodeId node = devhost::kNoNode;
    std::string name;

    explicit operator bool() const { return node != devhost::kNoNode; }
    ZPlug plug() const { return *this ? ZPlug(scene().object(node), name.c_str()) : ZPlug(); }
    std::optional<AttributeValue> value() const { return scene().attribute(node, name); }
};

/// "node.attribute", where the scene has both.
Attribute namedAttribute(const ZString &fullName) {
    const std::string text = fullName.asChar();
    const size_t dot = text.rfind('.');
    if (dot == std::string::npos || dot == 0)
        return {};
    const Attribute found{scene().find(text.substr(0, dot)), text.substr(dot + 1)};
    return found && found.value() ? found : Attribute();
}

/// The texture's file where the attribute is a material's textured colour.
Attribute sourceOf(const Attribute &attribute) {
    const devhost::Node *node = scene().node(attribute.node);
    const devhost::Material *material = node ? node->material() : nullptr;
    if (!material || attribute.name != "diffuse" || !scene().node(material->texture))
        return {};
    return {material->texture, "fileTextureName"};
}

void copyNumbers(const double *from, size_t count, std::vector<double> &to) {
    std::copy_n(from, std::min(count, to.size()), to.begin());
}

void readNumbers(const AttributeValue &value, std::vector<double> &numbers) {
    std::visit(
        [&numbers](const auto &held) {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_arithmetic_v<Held>)
                numbers[0] = double(held);
            else if constexpr (std::is_same_v<Held, ZVector>)
                copyNumbers(&held.x, 3, numbers);
            else if constexpr (std::is_same_v<Held, ZMatrix>)
                copyNumbers(held.matrix[0], 16, numbers);
        },
        value);
}

/// Puts the numbers where the attribute has them; those that the parameter lacks stay.
void writeNumbers(const std::vector<double> &numbers, AttributeValue &value) {
    std::visit(
        [&numbers](auto &held) {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, bool>)
                held = numbers[0] != 0;
            else if constexpr (std::is_same_v<Held, int>)
                held = toInt(numbers[0]);
            else if constexpr (std::is_same_v<Held, double>)
                held = numbers[0];
            else if constexpr (std::is_same_v<Held, ZVector>)
                std::copy_n(numbers.begin(), std::min<size_t>(3, numbers.size()), &held.x);
            else if constexpr (std::is_same_v<Held, ZMatrix>)
                std::copy_n(numbers.begin(), std::min<size_t>(16, numbers.size()), held.matrix[0]);
        },
        value);
}

} // namespace

struct ZUniformParameter::Data {
    ZString name;
    DataType type = kTypeUnknown;
    DataSemantic semantic = kSemanticUnknown;
    unsigned rows = 1, columns = 1;
    void *userData = nullptr;

    Value stored{{0.0}, {}};
    /// What was read last; empty when the parameter is dirty.
    std::optional<Value> lastRead;
    /// What getAsFloatArray handed out.
    std::vector<float> floats;

    double least = -std::numeric_limits<double>::infinity();
    double greatest = std::numeric_limits<double>::infinity();
    ZStringArray fields;

    // What a user interface shows.
    double softLeast = least, softGreatest = greatest;
    ZString niceName;
    bool hidden = false, keyable = true;

    bool isTexture() const { return type >= kType1DTexture && type <= kTypeEnvTexture; }
    bool hasText() const { return isTexture() || type == kTypeString; }
    bool hasNumbers() const {
        return type == kTypeBool || type == kTypeInt || type == kTypeFloat || type == kTypeEnum;
    }

    /// A number as the parameter's type and range allow it.
    double fitted(double number) const {
        if (type == kTypeBool)
            return number != 0;
        if (type == kTypeInt || type == kTypeFloat)
            number = number < least ? least : number > greatest ? greatest : number;
        return type == kTypeFloat ? number : toInt(number);
    }

    Value current(const DrawState &state) const {
        Value value = stored;
        const Attribute attribute = namedAttribute(name);
        if (hasText()) {
            const Attribute source = sourceOf(attribute);
            if (const auto found = (source ? source : attribute).value())
                if (const auto *text = std::get_if<std::string>(&*found))
                    value.text = text->c_str();
        } else if (hasNumbers()) {
            if (!devhost::readSemantic(semantic, state, value.numbers) && attribute)
                readNumbers(*attribute.value(), value.numbers);
            for (double &number : value.numbers)
                number = fitted(number);
        }
        return value;
    }

    const Value &read(const DrawState &state) {
        lastRead = current(state);
        return *lastRead;
    }
    bool differs(const DrawState &state) const { return !lastRead || *lastRead != current(state); }

    const float *readFloats(const DrawState &state) {
        const Value &value = read(state);
        floats.assign(value.numbers.begin(), value.numbers.end());
        return floats.data();
    }
    ZString readText(const DrawState &state) {
        const Value &value = read(state);
        if (type != kTypeEnum)
            return value.text;
        const double field = value.numbers[0];
        return field >= 0 && field < fields.length() ? fields[unsigned(field)] : ZString();
    }

    template <class Number>
    void setNumbers(const Number *numbers, size_t count) {
        if (!hasNumbers())
            return;
        count = std::min(count, stored.numbers.size());
        const Attribute attribute = namedAttribute(name);
        std::optional<AttributeValue> value = attribute.value();
        if (value)
            readNumbers(*value, stored.numbers);
        std::transform(numbers, numbers + count, stored.numbers.begin(),
                       [this](Number number) { return fitted(double(number)); });
        if (value) {
            writeNumbers(stored.numbers, *value);
            scene().setAttribute(attribute.node, attribute.name, *value);
        }
    }
    void setNumber(double number) { setNumbers(&number, 1); }

    void setText(const ZString &text) {
        if (hasText()) {
            stored.text = text;
            const Attribute attribute = namedAttribute(name);
            const Attribute source = sourceOf(attribute);
            const Attribute &target = source ? source : attribute;
            if (target)
                scene().setAttribute(target.node, target.name, text.asChar());
        } else if (type == kTypeEnum) {
            for (unsigned i = 0; i < fields.length(); ++i)
                if (fields[i] == text)
                    return setNumber(i);
        }
    }
};

ZUniformParameter::ZUniformParameter() : data_(new Data) {}

ZUniformParameter::ZUniformParameter(ZString const &name, DataType type, DataSemantic semantic,
                                     unsigned int rows, unsigned int columns, void *userData)
    : ZUniformParameter() {
    data_->name = name;
    data_->type = type;
    data_->semantic = semantic;
    data_->userData = userData;
    const unsigned long count = static_cast<unsigned long>(rows) * columns;
    const bool fits = count > 0 && count <= kMostValues &&
                      devhost::guarded([&] { data_->stored.numbers.resize(count); });
    if (fits) {
        data_->rows = rows;
        data_->columns = columns;
    } else {
        devhost::tell("the uniform parameter '" + std::string(name.asChar()) + "' cannot have " +
                      std::to_string(rows) + " x " + std::to_string(columns) +
                      " values: it has one");
    }
}

ZUniformParameter::ZUniformParameter(ZUniformParameter const &other)
    : data_(new Data(*other.data_)) {}

ZUniformParameter::~ZUniformParameter() {
    delete data_;
}

ZUniformParameter &ZUniformParameter::operator=(ZUniformParameter const &other) {
    *data_ = *other.data_;
    return *this;
}

ZString ZUniformParameter::name() const {
    return data_->name;
}

ZUniformParameter::DataType ZUniformParameter::type() const {
    return data_->type;
}

ZUniformParameter::DataSemantic ZUniformParameter::semantic() const {
    return data_->semantic;
}

unsigned int ZUniformParameter::numRows() const {
    return data_->rows;
}

unsigned int ZUniformParameter::numColumns() const {
    return data_->columns;
}

unsigned int ZUniformParameter::numElements() const {
    return data_->rows * data_->columns;
}

void *ZUniformParameter::userData() const {
    return data_->userData;
}

void ZUniformParameter::setRangeMin(double value) {
    data_->least = value;
}

void ZUniformParameter::setRangeMax(double value) {
    data_->greatest = value;
}

void ZUniformParameter::setSoftRangeMin(double value) {
    data_->softLeast = value;
}

void ZUniformParameter::setSoftRangeMax(double value) {
    data_->softGreatest = value;
}

void ZUniformParameter::setUIHidden(bool value) {
    data_->hidden = value;
}

bool ZUniformParameter::UIHidden() const {
    return data_->hidden;
}

void ZUniformParameter::setEnumFieldNames(ZString const &names) {
    data_->fields.clear();
    names.split(':', data_->fields);
}

void ZUniformParameter::setKeyable(bool value) {
    data_->keyable = value;
}

bool ZUniformParameter::keyable() const {
    return data_->keyable;
}

bool ZUniformParameter::isATexture() const {
    return data_->isTexture();
}

bool ZUniformParameter::hasChanged(ZGeometryList const &geometryList) const {
    return data_->differs(stateOf(geometryList));
}

bool ZUniformParameter::hasChanged(ZHWRender::ZDrawContext const &context) const {
    return data_->differs(stateOf(context));
}

float const *ZUniformParameter::getAsFloatArray(ZGeometryList const &geometryList) const {
    return data_->readFloats(stateOf(geometryList));
}

float const *ZUniformParameter::getAsFloatArray(ZHWRender::ZDrawContext const &context) const {
    return data_->readFloats(stateOf(context));
}

void ZUniformParameter::setAsFloatArray(float const *values, unsigned int count) {
    if (values)
        data_->setNumbers(values, count);
}

float ZUniformParameter::getAsFloat(ZGeometryList const &geometryList) const {
    return float(data_->read(stateOf(geometryList)).numbers[0]);
}

float ZUniformParameter::getAsFloat(ZHWRender::ZDrawContext const &context) const {
    return float(data_->read(stateOf(context)).numbers[0]);
}

void ZUniformParameter::setAsFloat(float value) {
    data_->setNumber(value);
}

ZString ZUniformParameter::getAsString(ZGeometryList const &geometryList) const {
    return data_->readText(stateOf(geometryList));
}

ZString ZUniformParameter::getAsString(ZHWRender::ZDrawContext const &context) const {
    return data_->readText(stateOf(context));
}

void ZUniformParameter::setAsString(ZString const &value) {
    data_->setText(value);
}

bool ZUniformParameter::getAsBool(ZGeometryList const &geometryList) const {
    return data_->read(stateOf(geometryList)).numbers[0] != 0;
}

bool ZUniformParameter::getAsBool(ZHWRender::ZDrawContext const &context) const {
    return data_->read(stateOf(context)).numbers[0] != 0;
}

void ZUniformParameter::setAsBool(bool value) {
    data_->setNumber(value);
}

int ZUniformParameter::getAsInt(ZGeometryList const &geometryList) const {
    return toInt(data_->read(stateOf(geometryList)).numbers[0]);
}

int ZUniformParameter::getAsInt(ZHWRender::ZDrawContext const &context) const {
    return toInt(data_->read(stateOf(context)).numbers[0]);
}

void ZUniformParameter::setAsInt(int value) {
    data_->setNumber(value);
}

void ZUniformParameter::setUINiceName(ZString const &name) {
    data_->niceName = name;
}

ZPlug ZUniformParameter::getPlug() const {
    return namedAttribute(data_->name).plug();
}

ZPlug ZUniformParameter::getSource() const {
    return sourceOf(namedAttribute(data_->name)).plug();
}

void ZUniformParameter::setDirty() {
    data_->lastRead.reset();
}
