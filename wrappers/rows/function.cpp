// SPDX-License-Identifier: MIT
#include "wrappers/rows/function.h"

#include "runtime/result_codes.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace binding {
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
    return std::string_view(function.declaration()).ends_with("const");
}

void add_object_type(Message &message, const Function &function) {
    message.add(function.owner());
    message.add(is_const(function) ? " const *" : " *");
}

void add_parameter_type(Message &message, const Function &function, int position,
                        bool named_by_value) {
    if (function.has_object() && position-- == 1)
        return add_object_type(message, function);
    ParameterTypes types(function.declaration());
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
    if (function.kind == Kind::kStatic && is_last) {
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
    ParameterTypes types(function.declaration());
    for (std::string_view type; types.next(type); separator = ",") {
        message.add(separator);
        message.add(type);
    }
    message.add(")\n");
}

bool takes(const Function &function, Py_ssize_t count) {
    return count >= function.min && count <= function.max;
}

/// Cases that take a number of arguments, in declaration order.
struct Candidates {
    struct Candidate {
        const Function *function;
        Probes probes;
    };
    Candidate candidates[kMaxCases];
    int count = 0;

    std::span<const Candidate> all() const { return {candidates, size_t(count)}; }
    /// True when the candidates do not all look at this argument the same way.
    bool differ_at(Py_ssize_t i) const {
        for (const Candidate &candidate : all())
            if (candidate.probes[i] != candidates[0].probes[i])
                return true;
        return false;
    }
};

/// Arguments that all candidates look at the same way do not tell them apart, and are not probed.
bool fits(const Candidates &candidates, Probes probes, PyObject *arguments) {
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(arguments); ++i)
        if (candidates.differ_at(i) && !probes[i](PyTuple_GET_ITEM(arguments, i)))
            return false;
    return true;
}

/// Calls a case the way the interpreter would call a row with its flags.
PyObject *call_case(const Function &function, PyObject *self, PyObject *arguments) {
    return function.native(self,
                           function.flags == METH_O ? PyTuple_GET_ITEM(arguments, 0) : arguments);
}

} // namespace

bool raise_argument(const Function &function, int position, ReadResult result) {
    if (result.remark == ReadResult::kRaised)
        return false;
    const bool is_null = result.remark == ReadResult::kNullReference;
    Message message;
    if (is_null)
        message.add("invalid null reference ");
    message.format("in method '%s', argument %d of type '", function.name, position);
    add_parameter_type(message, function, position, result.remark == ReadResult::kNamedByValue);
    message.add("'");
    const int code = result.code == SWIG_ERROR ? SWIG_TypeError : result.code;
    PyErr_SetString(SWIG_Python_ErrorType(code), message.text());
    return false;
}

void raise_expected_string(int position) {
    PyErr_Format(PyExc_TypeError, "Expected a String or Unicode object for argument %d", position);
}

PyObject *raise_no_overload(const Function &overloaded) {
    Message message;
    message.format("Wrong number or type of arguments for overloaded function '%s'.\n"
                   "  Possible C/C++ prototypes are:\n",
                   overloaded.name);
    for (const Function &function : overloaded.cases())
        add_prototype(message, function, &function == &overloaded.cases().back());
    PyErr_SetString(PyExc_NotImplementedError, message.text());
    return nullptr;
}

PyObject *dispatch(const Function &overloaded, const Probes *probes, PyObject *self,
                   PyObject *arguments) {
    if (!arguments || !PyTuple_Check(arguments))
        return raise_no_overload(overloaded);
    const Py_ssize_t given = PyTuple_GET_SIZE(arguments);
    Candidates candidates;
    for (const Function &function : overloaded.cases()) {
        if (takes(function, given)) {
            if (given == 0) // nothing tells it from the others
                return call_case(function, self, arguments);
            candidates.candidates[candidates.count++] = {&function, *probes};
        }
        ++probes;
    }
    if (candidates.count == 0)
        return raise_no_overload(overloaded);
    const auto all = candidates.all();
    for (const auto &[function, its_probes] : all.first(all.size() - 1))
        if (fits(candidates, its_probes, arguments))
            return call_case(*function, self, arguments);
    return call_case(*all.back().function, self, arguments);
}

} // namespace binding
