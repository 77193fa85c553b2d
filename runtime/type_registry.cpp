// SPDX-License-Identifier: MIT
#include "runtime/type_registry.h"

#include "runtime/client_data.h"
#include "runtime/convert.h"
#include "runtime/pending_error.h"

#include <cstring>
#include <string_view>

using namespace binding;

namespace {

constexpr char kHolderModule[] = "swig_runtime_data4";
constexpr char kHolderAttribute[] = "type_pointer";

/// Head of the ring, once it was found.
swig_module_info *type_pointer = nullptr;

/// True when the failure to find the ring's holder is one of memory, in whichever words: a module
/// that is there is not to be imported only then.
bool is_memory_short() {
    if (!PyErr_ExceptionMatches(PyExc_ImportError))
        return PyErr_ExceptionMatches(PyExc_MemoryError);
    PyObject *holder = PyDict_GetItemString(PyImport_GetModuleDict(), kHolderModule);
    return holder && PyModule_Check(holder);
}

/// Null where there is no ring yet, and with an exception set when memory is short: to take that
/// for the former would end the ring that there is.
swig_module_info *ring_head() {
    if (!type_pointer) {
        type_pointer = static_cast<swig_module_info *>(PyCObject_Import(
            const_cast<char *>(kHolderModule), const_cast<char *>(kHolderAttribute)));
        if (!type_pointer && is_memory_short())
            PyErr_NoMemory();
        else if (!type_pointer)
            PyErr_Clear();
    }
    return type_pointer;
}

/// Runs when the interpreter destroys the holder's attribute, which pointer objects may outlive:
/// they go on to destroy what they own. Types belong to the process: when one of several
/// interpreters ends, the others go on using them.
void SWIG_Python_DestroyModule(void *published) {
    type_pointer = nullptr;
    if (PyInterpreterState_Next(PyInterpreterState_Head()))
        return;
    auto *module = static_cast<swig_module_info *>(published);
    for (size_t i = 0; i < module->size; ++i) {
        swig_type_info *type = module->types[i];
        if (!type || !type->owndata || !type->clientdata) // null: publishing failed
            continue;
        SwigPyClientData_Release(static_cast<SwigPyClientData *>(type->clientdata));
    }
    Py_XDECREF(SWIG_This());
    SWIG_ForgetThis();
}

/// Makes swig_module the head of a new ring. The cached head is left alone: the next lookup
/// imports it, so that it is only ever what the interpreter really holds. False with an exception
/// set when memory is short.
bool publish_ring() {
    static PyMethodDef no_methods[] = {{nullptr, nullptr, 0, nullptr}};
    PyObject *holder = Py_InitModule(const_cast<char *>(kHolderModule), no_methods);
    PyObject *pointer = PyCObject_FromVoidPtr(&swig_module, SWIG_Python_DestroyModule);
    if (holder && pointer && PyModule_AddObject(holder, kHolderAttribute, pointer) == 0)
        return true;
    Py_XDECREF(pointer);
    return false;
}

/// False when this module is in the ring already.
bool join_ring(swig_module_info *head) {
    swig_module_info *module = head;
    do {
        if (module == &swig_module)
            return false;
        module = module->next;
    } while (module != head);
    swig_module.next = head->next;
    head->next = &swig_module;
    return true;
}

swig_type_info *find_in_other_modules(const char *name) {
    if (swig_module.next == &swig_module)
        return nullptr;
    return SWIG_MangledTypeQueryModule(swig_module.next, &swig_module, name);
}

void push_front(swig_type_info *type, swig_cast_info *entry) {
    if (type->cast) {
        type->cast->prev = entry;
        entry->next = type->cast;
    }
    type->cast = entry;
}

/// Links the type's initial cast entries into the list of the chosen record.
void link_casts(swig_type_info *chosen, bool is_own_record, swig_cast_info *entry) {
    for (; entry->type; ++entry) {
        swig_type_info *other = find_in_other_modules(entry->type->name);
        if (other && is_own_record)
            entry->type = other;
        else if (other && SWIG_TypeCheck(other->name, chosen))
            continue;
        push_front(chosen, entry);
    }
}

swig_type_info *choose_record(swig_type_info *own) {
    swig_type_info *found = find_in_other_modules(own->name);
    if (!found)
        return own;
    if (own->clientdata)
        found->clientdata = own->clientdata;
    return found;
}

swig_type_info *find_mangled(const swig_module_info *module, const char *name) {
    if (!module->size)
        return nullptr;
    size_t left = 0, right = module->size - 1;
    while (left <= right) {
        size_t middle = (left + right) / 2;
        swig_type_info *type = module->types[middle];
        if (!type || !type->name)
            return nullptr;
        int order = std::strcmp(name, type->name);
        if (order == 0)
            return type;
        if (order > 0)
            left = middle + 1;
        else if (middle == 0)
            return nullptr;
        else
            right = middle - 1;
    }
    return nullptr;
}

bool has_alternative(const char *alternatives, std::string_view name) {
    std::string_view rest = alternatives;
    for (;;) {
        size_t bar = rest.find('|');
        if (SWIG_TypeNameComp(rest.substr(0, bar), name))
            return true;
        if (bar == std::string_view::npos)
            return false;
        rest.remove_prefix(bar + 1);
    }
}

} // namespace

bool SWIG_TypeNameComp(std::string_view a, std::string_view b) {
    auto skip_blanks = [](std::string_view &text) {
        while (!text.empty() && text.front() == ' ')
            text.remove_prefix(1);
    };
    for (;;) {
        skip_blanks(a);
        skip_blanks(b);
        if (a.empty() || b.empty())
            return a.empty() && b.empty();
        if (a.front() != b.front())
            return false;
        a.remove_prefix(1);
        b.remove_prefix(1);
    }
}

bool SWIG_InitializeModule() {
    swig_module_info *head = ring_head();
    if (!head && PyErr_ExceptionMatches(PyExc_MemoryError))
        return false;
    const bool first_time = !swig_module.next;
    if (first_time) {
        make_initial_cast_lists();
        swig_module.type_initial = swig_type_initial;
        swig_module.cast_initial = swig_cast_initial;
        swig_module.next = &swig_module;
    }
    if (!head && !publish_ring()) {
        if (first_time)
            swig_module.next = nullptr;
        return false;
    }
    if ((head && !join_ring(head)) || !first_time)
        return true;
    for (size_t i = 0; i < swig_module.size; ++i) {
        swig_type_info *own = swig_module.type_initial[i];
        swig_type_info *chosen = choose_record(own);
        link_casts(chosen, chosen == own, swig_module.cast_initial[i]);
        swig_module.types[i] = chosen;
    }
    swig_module.types[swig_module.size] = nullptr;
    return true;
}

swig_cast_info *SWIG_TypeCheck(const char *name, swig_type_info *target) {
    for (swig_cast_info *entry = target->cast; entry; entry = entry->next) {
        if (std::strcmp(entry->type->name, name) != 0)
            continue;
        if (entry == target->cast)
            return entry;
        entry->prev->next = entry->next;
        if (entry->next)
            entry->next->prev = entry->prev;
        entry->next = target->cast;
        entry->prev = nullptr;
        target->cast->prev = entry;
        target->cast = entry;
        return entry;
    }
    return nullptr;
}

swig_type_info *SWIG_MangledTypeQueryModule(swig_module_info *start, swig_module_info *end,
                                            const char *name) {
    swig_module_info *module = start;
    do {
        if (swig_type_info *type = find_mangled(module, name))
            return type;
        module = module->next;
    } while (module != end);
    return nullptr;
}

swig_type_info *SWIG_TypeQueryModule(swig_module_info *start, swig_module_info *end,
                                     const char *name) {
    if (swig_type_info *type = SWIG_MangledTypeQueryModule(start, end, name))
        return type;
    swig_module_info *module = start;
    do {
        for (size_t i = 0; i < module->size; ++i) {
            swig_type_info *type = module->types[i];
            if (type->str && has_alternative(type->str, name))
                return type;
        }
        module = module->next;
    } while (module != end);
    return nullptr;
}

swig_type_info *SWIG_TypeQuery(const char *name) {
    static PyObject *known = nullptr;
    const PendingError keep; // what cannot be remembered is found again
    if (!known)
        known = PyDict_New();
    PyObject *key = PyString_FromString(name);
    swig_type_info *type = nullptr;
    if (PyObject *address = known && key ? PyDict_GetItem(known, key) : nullptr) {
        type = static_cast<swig_type_info *>(PyCObject_AsVoidPtr(address));
    } else if (swig_module_info *head = ring_head() ? type_pointer : swig_module.next) {
        // An interpreter that did not load the ring's first module itself has no holder.
        type = SWIG_TypeQueryModule(head, head, name);
        PyObject *found = type ? PyCObject_FromVoidPtr(type, nullptr) : nullptr;
        if (found && known && key)
            PyDict_SetItem(known, key, found);
        Py_XDECREF(found);
    }
    Py_XDECREF(key);
    return type;
}

void SWIG_TypeClientData(swig_type_info *type, void *data) {
    type->clientdata = data;
    for (swig_cast_info *entry = type->cast; entry; entry = entry->next)
        if (!entry->converter && !entry->type->clientdata)
            SWIG_TypeClientData(entry->type, data);
}

void SWIG_TypeNewClientData(swig_type_info *type, void *data) {
    SWIG_TypeClientData(type, data);
    type->owndata = 1;
}

const char *SWIG_TypePrettyName(const swig_type_info *type) {
    if (!type->str)
        return type->name;
    const char *bar = std::strrchr(type->str, '|');
    return bar ? bar + 1 : type->str;
}
