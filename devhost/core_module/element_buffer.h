// SPDX-License-Identifier: MIT
#pragma once

// Blocks of the render module's structures that scripts make. The structure's class belongs to the
// render module, whose proxies delete one object at a time, so a block cannot be an owned pointer
// to the first one. Instead a class of this module owns the block, and behind its pointer object is
// chained a borrowed pointer to the first element: where the render view takes a pointer to the
// structure, the buffer itself can be passed. Borrowed pointers are valid while the buffer lives;
// it never moves its elements.

#include "devhost/core_module/items.h"

#include <exception>
#include <memory>

namespace binding {

/// A new buffer for its proxy's initialiser; null with an exception set.
template <class Buffer>
PyObject *new_elements(unsigned int count) {
    using Element = std::remove_pointer_t<decltype(std::declval<Buffer &>().data())>;
    std::unique_ptr<Buffer> buffer;
    try {
        buffer = std::make_unique<Buffer>(count);
    } catch (const std::exception &) {
        return PyErr_NoMemory();
    }
    const swig::SwigPtr_PyObject first(
        SWIG_Python_NewPointerObj(buffer->data(), type_of<Element>(), kBorrowed | kNoProxy));
    if (!first)
        return nullptr;
    swig::SwigPtr_PyObject result(constructed(buffer.release()));
    // An empty buffer has no first element.
    if (result && first.get() != Py_None)
        const swig::SwigPtr_PyObject none(SwigPyObject_append(result.get(), first.get()));
    return result.release();
}

} // namespace binding
