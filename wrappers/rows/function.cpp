#include "wrappers/rows/function.h"

#include "runtime/arguments.h"
#include "runtime/result_codes.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace {

/// A message under construction. It has its own room: memory may be what is short.
class Message {
  public:
    void format(const char *format, ...) __attribute__((format(printf, 2, 3))) {
        va_list values;
        va_start(values, format);
        const int written = std::vsnprintf(text_ + size_, sizeof(text_) - size_, format, values);
        va_end(values);
        size_ = std::min(size_ + static_cast<size_t>(written), sizeof(text_) - 1);
    }
    void add(std::string_view text) { format("%.*s", static_cast<int>(text.size()), text.data()); }
    const char *text() const { return text_; }

  private:
    char text_[2048] = "";
    size_t size_ = 0;
};

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

/// Walks the parameter types of a declaration, "R(A, B, C) const".
class ParameterTypes {
  public:
    explicit ParameterTypes(const char *declaration) {
        const std::string_view text = declaration;
        const size_t open = text.find('('), close = text.rfind(')');
        if (open != std::string_view::npos && close > open)
            rest_ = trimmed(text.substr(open + 1, close - open - 1));
    }
    bool next(std::string_view &type) {
        if (rest_.empty())
            return false;
        const size_t comma = rest_.find(',');
        type = trimmed(rest_.substr(0, comma));
        rest_ = comma == std::string_view::npos ? "" : rest_.substr(comma + 1);
        return true;
    }

  private:
    std::string_view rest_;
};

bool is_const(const Function &function) {
    return std::string_view(function.declaration).ends_with("const");
}

void add_object_type(Message &message, const Function &function) {
    message.add(function.owner());
    message.add(is_const(function) ? " const *" : " *");
}

void add_parameter_type(Message &message, const Function &function, int position,
                        bool named_by_value) {
    if (function.has_object() && position-- == 1)
        return add_object_type(message, function);
    ParameterTypes types(function.declaration);
    std::string_view type;
    while (position-- > 0)
        types.next(type);
    if (named_by_value)
        type.remove_suffix(std::strlen(" const &"));
    message.add(type);
}

/// Prototypes of static functions carry the class's name in the last line, as a C++ reader
/// expects; methods show it in the type of their object.
void add_prototype(Message &message, const Function &function, bool is_last) {
    message.add("    ");
    if (function.kind == Kind::Static && is_last) {
        message.add(function.owner());
        message.add("::");
    }
    message.add(function.member());
    message.add("(");
    const char *separator = "";
    if (function.has_object()) {
        add_object_type(message, function);
        separator = ",";
    }
    ParameterTypes types(function.declaration);
    for (std::string_view type; types.next(type); separator = ",") {
        message.add(separator);
        message.add(type);
    }
    message.add(")\n");
}

bool takes(const Function &function, Py_ssize_t count) {
    return count >= function.min && count <= function.max;
}

Probe probe_at(const Function &overload, Py_ssize_t i) {
    return static_cast<const DetailedFunction &>(overload).probes[i];
}

/// True when some other candidate would look at this argument differently.
bool tells_apart(std::span<const Function *const> candidates, const Function &function,
                 Py_ssize_t i) {
    for (const Function *other : candidates)
        if (probe_at(*other, i) != probe_at(function, i))
            return true;
    return false;
}

bool fits(std::span<const Function *const> candidates, const Function &function,
          PyObject *arguments) {
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(arguments); ++i)
        if (tells_apart(candidates, function, i) &&
            !probe_at(function, i)(PyTuple_GET_ITEM(arguments, i)))
            return false;
    return true;
}

/// Calls a case the way the interpreter would call a row with its flags.
PyObject *call_case(const Function &function, PyObject *self, PyObject *arguments) {
    return function.native(self,
                           function.flags == METH_O ? PyTuple_GET_ITEM(arguments, 0) : arguments);
}

/// What stands before the class in the names of constructors and the like.
size_t prefix_size(Kind kind) {
    switch (kind) {
    case Kind::Constructor:
        return std::strlen("new_");
    case Kind::Destructor:
        return std::strlen("delete_");
    case Kind::Disown:
        return std::strlen("disown_");
    default:
        return 0;
    }
}

} // namespace

std::string_view Function::owner() const {
    return {name + prefix_size(kind), owner_size};
}

std::string_view Function::member() const {
    if (kind == Kind::Constructor || kind == Kind::Destructor || kind == Kind::Disown)
        return owner();
    return owner_size ? name + owner_size + 1 : name;
}

std::span<const Function *const> Function::cases() const {
    return is_dispatcher ? static_cast<const Dispatcher *>(this)->overloads
                         : std::span<const Function *const>();
}

Py_ssize_t raise_argument_count(const Function &function, PyObject *arguments) {
    PyObject *objects[kMaxParameters];
    return SWIG_Python_UnpackTuple(arguments, function.name, function.min, function.max, objects) -
           1;
}

bool read_arguments(const Function &function, PyObject *arguments, const Reader *readers,
                    void *cells, size_t size) {
    const Py_ssize_t count = argument_count(function, arguments);
    if (count < 0)
        return false;
    char *cell = static_cast<char *>(cells);
    int i = 0;
    for (; i < count; ++i, cell += size)
        if (!readers[i](cell, function, PyTuple_GET_ITEM(arguments, i), i))
            return false;
    for (; i < function.max; ++i, cell += size)
        readers[i](cell, function, nullptr, i);
    return true;
}

bool raise_argument(const Function &function, int position, int code) {
    if (code == kRaised)
        return false;
    const bool named_by_value = code < kNamedByValue;
    if (named_by_value)
        code -= kNamedByValue;
    Message message;
    if (code == kNullReference)
        message.add("invalid null reference ");
    message.format("in method '%s', argument %d of type '", function.name, position);
    add_parameter_type(message, function, position, named_by_value);
    message.add("'");
    const int type = code == kNullReference ? SWIG_ValueError
                     : code == SWIG_ERROR   ? SWIG_TypeError
                                            : code;
    PyErr_SetString(SWIG_Python_ErrorType(type), message.text());
    return false;
}

void raise_expected_string(int position) {
    PyErr_Format(PyExc_TypeError, "Expected a String or Unicode object for argument %d", position);
}

PyObject *raise_no_overload(std::span<const Function *const> overloads) {
    Message message;
    message.format("Wrong number or type of arguments for overloaded function '%s'.\n"
                   "  Possible C/C++ prototypes are:\n",
                   overloads.front()->name);
    for (const Function *function : overloads)
        add_prototype(message, *function, function == overloads.back());
    PyErr_SetString(PyExc_NotImplementedError, message.text());
    return nullptr;
}

PyObject *dispatch(std::span<const Function *const> overloads, PyObject *self,
                   PyObject *arguments) {
    if (!arguments || !PyTuple_Check(arguments))
        return raise_no_overload(overloads);
    const Function *candidates[8];
    size_t count = 0;
    for (const Function *function : overloads)
        if (takes(*function, PyTuple_GET_SIZE(arguments)))
            candidates[count++] = function;
    if (count == 0)
        return raise_no_overload(overloads);
    const std::span<const Function *const> all(candidates, count);
    for (const Function *function : all.first(count - 1))
        if (fits(all, *function, arguments))
            return call_case(*function, self, arguments);
    return call_case(*all.back(), self, arguments);
}
