// SPDX-License-Identifier: MIT
// What the core module's classes have for scripts beyond the host's C++ interface. Only the
// companion layer's generator reads this file: for documentation and parameter names.

/// What all buffers have.
template <class Item>
class Buffer {
    /// Makes a buffer of the given number of zeros.
    Buffer(unsigned int count);
    /// Makes a buffer from a sequence of items, from the bytes of a str, bytearray or buffer, or
    /// from the memory of an array.array or memoryview of the same items. Raises BufferError for
    /// memory of another class that the host lends.
    Buffer(PyObject *data);
    /// Makes a buffer as a copy of the first `count` items of native memory: untyped, as the host
    /// hands it out (`void *`), or another buffer. The memory must hold that many: where its length
    /// is known, IndexError is raised when it is shorter.
    Buffer(PyObject *memory, unsigned int count);
    /// Returns the number of items; -1 where it is not known.
    long length() const;
    /// Returns the item at the index; a null pointer is None. Raises IndexError when there is none.
    Item get(long index) const;
    /// Replaces the item at the index. Raises IndexError when there is none.
    void set(long index, PyObject *value);
    /// Returns `count` items from `start` on: characters and unsigned characters as a str, all
    /// others as a list.
    PyObject *read(long start, long count) const;
    /// Returns the bytes of `count` items from `start` on as a str.
    PyObject *readBytes(long start, long count) const;
    /// Replaces the items from `start` on by whatever a buffer can be made from.
    void write(long start, PyObject *data);
    /// Returns the number of items. Raises TypeError where it is not known.
    long __len__() const;
    /// Returns the item at the index, or the items of a slice as read() does; a null pointer is
    /// None. Negative indices count from the end, where the length is known. Raises IndexError when
    /// there is no such item.
    Item __getitem__(PyObject *index) const;
    /// Replaces the item at the index, or the items of a slice by as many as write() takes. Raises
    /// IndexError when there is no such item, and ValueError where a slice has another length.
    void __setitem__(PyObject *index, PyObject *value);
    /// Returns where the items are: address, number of bytes, the code that the struct module has
    /// for them, the shape of an item, which is empty for numbers, and an object that keeps the
    /// memory. What memoryview() and buffer() are made from.
    PyObject *memory() const;
    /// Iterates over the items. Raises TypeError where the length is not known.
    PyObject *__iter__() const;
};

/// What scripts have of all arrays of numbers and of small values.
///
/// Those of numbers, and of vectors, points, colours and matrices, are memory: memoryview() sees
/// their numbers, as "f" in two dimensions for vectors, say. While a view sees it, an array keeps
/// its length: what would change it raises BufferError. Where an operation of the host fills the
/// array with another number of items, the view keeps what it saw.
template <class T>
class ZArrayOf {
    /// Makes an array from a sequence of items, from the bytes of a str, bytearray or buffer, or
    /// from the memory of an array.array, memoryview or other native memory of the same numbers.
    ZArrayOf(PyObject *data);
    /// Returns `count` items from `start` on as a list, without making an object for each where
    /// that is possible: vectors, points and colours are tuples of their numbers.
    PyObject *read(long start, long count) const;
    /// Returns the bytes of `count` items from `start` on as a str.
    PyObject *readBytes(long start, long count) const;
    /// Replaces the items from `start` on by whatever an array can be made from. Raises IndexError
    /// when they do not fit.
    void write(long start, PyObject *data);
    /// Returns the item at the index; negative ones count from the end. Returns the items of a
    /// slice as read() does. Raises IndexError when there is no such item.
    T __getitem__(PyObject *index) const;
    /// Replaces the item at the index, or the items of a slice by as many as write() takes. Raises
    /// IndexError when there is no such item, and ValueError where a slice has another length.
    void __setitem__(PyObject *index, PyObject *value);
    /// Returns where the numbers are: address, number of bytes, the code that the struct module has
    /// for them, the shape of an item, and an object that keeps the memory. What memoryview() and
    /// buffer() are made from.
    PyObject *memory() const;
};

class ZStringArray {
    /// Makes an array from a sequence of texts.
    ZStringArray(PyObject *data);
    /// Returns `count` texts from `start` on as a list.
    PyObject *read(long start, long count) const;
    /// Replaces the texts from `start` on by those of a sequence. Raises IndexError when they do
    /// not fit.
    void write(long start, PyObject *data);
    /// Returns the text at the index, negative ones count from the end, or the texts of a slice.
    /// Raises IndexError when there is no such text.
    ZString __getitem__(PyObject *index) const;
    /// Replaces the text at the index, or the texts of a slice by as many. Raises IndexError when
    /// there is no such text, and ValueError where a slice has another length.
    void __setitem__(PyObject *index, PyObject *value);
};

/// Characters side by side: `char *`. See FloatBuffer for how buffers work.
class CharBuffer : public Buffer<char> {};
/// Signed characters side by side: `signed char *`. See FloatBuffer for how buffers work.
class SignedCharBuffer : public Buffer<signed char> {};
/// Bytes side by side, such as pixels: `unsigned char *`. See FloatBuffer for how buffers work.
class UnsignedCharBuffer : public Buffer<unsigned char> {};
/// 16-bit integers side by side: `short *`. See FloatBuffer for how buffers work.
class ShortBuffer : public Buffer<short> {};
/// Unsigned 16-bit integers side by side: `unsigned short *`. See FloatBuffer for how buffers work.
class UnsignedShortBuffer : public Buffer<unsigned short> {};
/// 32-bit integers side by side: `int *` and `int &`. See FloatBuffer for how buffers work.
class IntBuffer : public Buffer<int> {};
/// Unsigned 32-bit integers side by side: `unsigned int *` and `unsigned int &`. See FloatBuffer
/// for how buffers work.
class UnsignedIntBuffer : public Buffer<unsigned int> {};
/// 64-bit integers side by side: `long *`. See FloatBuffer for how buffers work.
class LongBuffer : public Buffer<long> {};
/// Unsigned 64-bit integers side by side: `unsigned long *`. See FloatBuffer for how buffers work.
class UnsignedLongBuffer : public Buffer<unsigned long> {};
/// Single-precision numbers side by side, such as depths: `float *` and `float &`.
///
/// A buffer that a script makes owns its memory. One that the host returns is borrowed: it is
/// valid while its owner lives. The length of what a callback is lent is known; that of other
/// memory of the host is not, so that only negative indices are refused there. A buffer of one item
/// serves as the cell that an operation writes a result to.
class FloatBuffer : public Buffer<float> {};
/// Kinds of hardware textures, kHwTexture... of ZImageFileInfo, such as ZHwTextureManager.glBind
/// writes to. See FloatBuffer for how buffers work.
class ZHwTextureTypeBuffer : public Buffer<ZImageFileInfo::ZHwTextureType> {};
/// Double-precision numbers side by side: `double *` and `double &`. See FloatBuffer for how
/// buffers work.
class DoubleBuffer : public Buffer<double> {};
/// Pixel formats of the hardware renderer's buffers: `ZHardwareRenderer::BufferPixelFormat &`. See
/// FloatBuffer for how buffers work.
class BufferPixelFormatBuffer : public Buffer<BufferPixelFormat> {};
/// The number format of a render pass's frame buffer, as ZFnRenderPass.frameBufferType returns it:
/// item 0 is 1 for 8-bit integers, 2 for 16-bit and 4 for 32-bit floating-point numbers. See
/// FloatBuffer for how buffers work.
class PassTypeBitBuffer : public Buffer<PassTypeBit> {};
/// Pointers to characters: `char **`. What they point to is not kept. See FloatBuffer for how
/// buffers work.
class CharPointerBuffer : public Buffer<char *> {};
/// Pointers to unsigned integers: `unsigned int **`. What they point to is not kept. See
/// FloatBuffer for how buffers work.
class UnsignedIntPointerBuffer : public Buffer<unsigned int *> {};
/// Pointers to anything: `void **`. What they point to is not kept. See FloatBuffer for how
/// buffers work.
class VoidPointerBuffer : public Buffer<void *> {};

/// A fixed number of pixels for ZRenderView.updatePixels, filled in bulk. The buffer itself can be
/// passed where an RV_PIXEL pointer is expected.
class PixelBuffer {
    /// Makes a buffer of transparent black pixels.
    PixelBuffer(unsigned int count);
    /// Returns the number of pixels.
    unsigned int length() const;
    /// Returns where the numbers are: address, number of bytes, "f", the shape of a pixel, which is
    /// four of them, and an object that keeps the memory. What memoryview() and buffer() are made
    /// from.
    PyObject *memory() const;
    /// Returns the colour at the index; negative ones count from the end. Returns the pixels of a
    /// slice as read() does. Raises IndexError when there is no such pixel.
    ZColor __getitem__(PyObject *index) const;
    /// Replaces the pixel at the index by a colour, or the pixels of a slice by as many as write()
    /// takes. Raises IndexError when there is no such pixel, and ValueError where a slice has
    /// another length.
    void __setitem__(PyObject *index, PyObject *value);
    /// Returns `count` pixels from `start` on as a list of tuples of four numbers.
    PyObject *read(long start, long count) const;
    /// Replaces the pixels from `start` on: by the four numbers of each, as the bytes of a str,
    /// bytearray or buffer or the memory of an array.array, memoryview or other native memory of
    /// "f", or by a sequence of colours. Raises IndexError when they do not fit.
    void write(long start, PyObject *data);
    /// Returns the bytes of `count` pixels from `start` on, four floats each, as a str.
    PyObject *readBytes(long start, long count) const;
    /// Returns the pixel at `start`, which stands for all those behind it as well.
    RV_PIXEL *pixels(long start = 0);
    /// Makes all pixels the colour.
    void fill(ZColor const &color);
    /// Sets the pixels from `start` on to the colours. Raises IndexError when they do not fit.
    void setColors(long start, ZColorArray const &colors);
    /// Sets the pixels from `start` on to the colours, all with the same opacity.
    void setColors(long start, ZFloatVectorArray const &colors, float alpha = 1);
};

/// A fixed number of extra layers for ZRenderView.updatePixels. The buffer itself can be passed
/// where an RV_AOV pointer is expected.
class LayerBuffer {
    /// Makes a buffer of layers without names and values.
    LayerBuffer(unsigned int count);
    /// Returns the number of layers.
    unsigned int length() const;
    /// Returns the layer at the index, which stands for all those behind it as well.
    RV_AOV *__getitem__(long index);
    /// Makes a layer of the name with so many values for each pixel. The values are copied, all
    /// those that the buffer has from its first one on. Raises IndexError when there is no such
    /// layer, and ValueError for memory whose length is not known.
    void set(long index, ZString const &name, unsigned int channels, float *values);
};

/// A node, for scripts that explore a scene.
class ZObject {
    /// Returns the names of the node's attributes, which ZPlug takes; none for a null handle.
    ZStringArray attributeNames() const;
};

/// What nodes there can be in a scene.
class NodeTypes {
    /// Returns the types of nodes, as ZObject.apiTypeStr and ZSelectionList.addNodesOfType have
    /// them.
    static ZStringArray names();
    /// Returns a list of what all nodes of the type have: for each attribute a dictionary with
    /// "name", "type" (bool, int, double, string, vector or matrix, as the members of ZPlug),
    /// "unit" (may be empty), "default" (the value), "settable" and "meaning". Raises ValueError
    /// for a type that there is not.
    static PyObject *attributes(ZString const &type);
};

/// The frames that the host renders.
class Frames {
    /// Returns the time of the frame that is rendered, also in callbacks; between frames that of
    /// the last one, and before the first frame that of the first.
    static ZTime current();
    /// Returns what renders the frames: "software", "hardware" or "viewport:" with a name, as
    /// quilhost's --renderer or setRenderer chose it.
    static ZString renderer();
    /// Chooses what renders the frames that a script leaves to the host, and those of render().
    /// "software" is the host's own renderer, with the render callbacks. "hardware" draws the
    /// meshes without shadows, once for each of the --samples, and executes the draw procedures in
    /// the lists of ZHardwareRenderer before, between and behind that. "viewport:NAME" lets the
    /// registered viewport renderer of the name draw. Fails with kInvalidParameter when the name is
    /// none of these; a viewport renderer need not be registered yet.
    static ZStatus setRenderer(ZString const &name);
    /// Renders the current frame, in the size of the render settings, and writes it to a .png or
    /// .exr file. Fails with kInvalidParameter for another file name, with kNotFound when there is
    /// no camera or no viewport renderer of the name, and as the renderer does.
    static ZStatus render(ZString const &fileName);
};

/// Swatches of materials and textures by the host's registered generators. The host's own one,
/// "materialBall", shows a ball; ZSwatchRenderRegister makes further ones known.
class Swatches {
    /// Returns the names of the registered generators.
    static ZStringArray generators();
    /// Returns the creator of a generator, for ZSwatchRenderRegister.registerSwatchRender. Fails
    /// with kNotFound when there is no such generator.
    static ZSwatchRenderCreatorFnPtr creator(ZString const &generator);
    /// Begins the swatch of a node and returns it as a ZSwatchRenderBase, for which OpenQuilRender
    /// has to be imported; call its doIteration() until that returns True. Fails with kNotFound
    /// when there is no such generator, and with kInvalidParameter when the resolution is not 1 to
    /// 4096 or the generator cannot show the node.
    static PyObject *begin(ZString const &generator, ZObject const &node, int resolution);
    /// Renders the swatch of a node into the image. Fails as begin() does, and with kFailure when
    /// swatch rendering is switched off or was cancelled; the image then keeps its contents.
    static ZStatus render(ZString const &generator, ZObject const &node, int resolution,
                          ZImage &image, int quality = 1);
};

class ZImage {
    /// Returns the number of columns.
    unsigned int width() const;
    /// Returns the number of rows.
    unsigned int height() const;
    /// Returns the bytes of all pixels as a str, rows from the bottom up.
    PyObject *readPixels() const;
    /// Replaces all pixels by the bytes of a str, bytearray or buffer, laid out as readPixels
    /// returns them. Raises ValueError when their number differs.
    void writePixels(PyObject *data);
};

class ZString {
    /// Returns the text as a Python unicode object.
    ZString asUnicode() const;
    /// Adds the text at the end.
    void append(ZString const &text);
    /// Replaces the text.
    ZStatus set(ZString const &text);
};

class ZMatrix {
    /// Makes a matrix from 16 numbers, row by row, or from 4 rows of 4.
    ZMatrix(PyObject *items);
    /// Returns the element at the row and column. Raises IndexError when there is none.
    double getElement(long row, long column) const;
    /// Replaces the element at the row and column. Raises IndexError when there is none.
    void setElement(long row, long column, double value);
    /// Returns a list of the four elements of the row. Changing the list does not change the
    /// matrix.
    PyObject *__getitem__(long row) const;
    /// Returns the number of rows, 4.
    unsigned int __len__() const;
};

class ZFloatMatrix {
    /// Makes a matrix from 16 numbers, row by row, or from 4 rows of 4.
    ZFloatMatrix(PyObject *items);
    /// Returns the element at the row and column. Raises IndexError when there is none.
    float getElement(long row, long column) const;
    /// Replaces the element at the row and column. Raises IndexError when there is none.
    void setElement(long row, long column, float value);
    /// Returns a list of the four elements of the row. Changing the list does not change the
    /// matrix.
    PyObject *__getitem__(long row) const;
    /// Returns the number of rows, 4.
    unsigned int __len__() const;
};

/// Viewports that native viewport renderers draw. A script loads the library of a renderer (with
/// ctypes, say), which registers it.
class Viewports {
    /// Returns the names of the registered viewport renderers.
    static ZStringArray renderers();
    /// Returns the renderer of a name. Fails with kNotFound when none is registered.
    static ZViewportRenderer *renderer(ZString const &name);
    /// Draws the scene with a renderer, as much of it as the renderer takes over, and writes a PNG
    /// file where the file name is not empty. Fails with kNotFound when there is no such renderer
    /// or no camera, with kInvalidParameter when the size is not 1 to 16384 pixels, and as the
    /// renderer itself does.
    static ZStatus render(ZString const &name, unsigned int width, unsigned int height,
                          ZString const &fileName);
};
