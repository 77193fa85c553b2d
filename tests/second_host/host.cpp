// SPDX-License-Identifier: MIT
// A host of a few operations whose objects are laid out in another way than the development host's:
// text is UTF-8 with a count, a status two ints, and the lock is captured by whoever asks for it.

#include "devhost/util/Utf8.h"
#include "host/base/TapiCast.h"
#include "host/base/TpythonInterpreter.h"
#include "host/base/TpythonObjectWithLock.h"
#include "host/core/ZObject.h"
#include "host/core/ZStatus.h"
#include "host/core/ZStringArray.h"
#include "host/render/ZHardwareRenderer.h"
#include "host/render/ZRenderCallback.h"
#include "host/render/ZRenderUtil.h"
#include "host/render/ZRenderView.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <map>
#include <string>
#include <thread>
#include <utility>

// The base libraries.

Tstring::Tstring() noexcept : bytes_(nullptr), byteCount_(0), wide_(nullptr), charCount_(0) {}

Tstring::Tstring(const Tstring &other) : Tstring() {
    set(other.asW(), other.charCount_);
}

Tstring::Tstring(Tstring &&other) noexcept : Tstring() {
    std::swap(bytes_, other.bytes_);
    std::swap(byteCount_, other.byteCount_);
    std::swap(charCount_, other.charCount_);
}

Tstring::~Tstring() {
    delete[] bytes_;
    delete[] wide_;
}

Tstring &Tstring::operator=(const Tstring &other) {
    set(other.asW(), other.charCount_);
    return *this;
}

void Tstring::set(const wchar_t *chars, unsigned count) {
    const std::string bytes = devhost::encodeUtf8({chars, count});
    char *const fresh = new char[bytes.size() + 1];
    std::memcpy(fresh, bytes.c_str(), bytes.size() + 1);
    delete[] std::exchange(bytes_, fresh);
    delete[] std::exchange(wide_, nullptr);
    byteCount_ = static_cast<unsigned>(bytes.size());
    charCount_ = count;
}

const wchar_t *Tstring::asW() const {
    if (!wide_) {
        const std::wstring chars = devhost::decodeUtf8({bytes_ ? bytes_ : "", byteCount_});
        wide_ = new wchar_t[chars.size() + 1];
        std::copy_n(chars.c_str(), chars.size() + 1, wide_);
    }
    return wide_;
}

unsigned Tstring::numChars() const {
    return charCount_;
}

const char *Tstring::asUTF8() const {
    return bytes_ ? bytes_ : "";
}

template <class T>
TobjArray<T>::TobjArray() noexcept : first_(nullptr), count_(0) {}

template <class T>
TobjArray<T>::~TobjArray() {
    delete[] first_;
}

template <class T>
void TobjArray<T>::changeLogicalSizeTo(unsigned count) {
    auto *const grown = new T[count];
    std::copy_n(first_, std::min<unsigned>(count, count_), grown);
    delete[] std::exchange(first_, grown);
    count_ = static_cast<unsigned short>(count);
}

template <class T>
T &TobjArray<T>::operator[](unsigned index) {
    return first_[index];
}

template <class T>
unsigned TobjArray<T>::logicalSize() const {
    return count_;
}

template class TobjArray<Tstring>;

bool pythonMainThreadIsLocked = false;
std::atomic<int> TpythonLock::fsCapturedCount{0};
wchar_t sPythonObjectCharConvertBuffer[kPythonObjectCharConvertBufferSize];

void TpythonLock::initLock(TpythonLockingInfo info) {
    if (info != kPythonLock || !Py_IsInitialized())
        return;
    state_ = PyGILState_Ensure();
    captured_ = 1;
    ++fsCapturedCount;
    markedMainThread_ = !std::exchange(pythonMainThreadIsLocked, true);
}

TpythonInterpreter *TpythonInterpreter::fsInterpreter;

TpythonInterpreter::TpythonInterpreter() = default;

void TpythonInterpreter::catchAndReportException() {
    PySys_SetObject(const_cast<char *>("last_report"), PyErr_Occurred());
    PyErr_Clear();
}

// The core library.

static std::deque<std::string> &texts() {
    static std::deque<std::string> all{"no text"};
    return all;
}

ZStatus::ZStatus() noexcept : code_(kSuccess), text_(0) {}

ZStatus::ZStatus(ZStatusCode code, const char *text)
    : code_(code), text_(static_cast<int>(texts().size())) {
    texts().emplace_back(text);
}

ZStatus::ZStatus(const ZStatus &) noexcept = default;
ZStatus &ZStatus::operator=(const ZStatus &) noexcept = default;
ZStatus::~ZStatus() = default;

bool ZStatus::error() const {
    return code_ != kSuccess;
}

ZStatus::ZStatusCode ZStatus::statusCode() const {
    return static_cast<ZStatusCode>(code_);
}

ZString ZStatus::errorString() const {
    const std::wstring text = devhost::decodeUtf8(texts()[static_cast<size_t>(text_)]);
    ZString result;
    result.set(text.data(), static_cast<unsigned>(text.size()));
    return result;
}

ZString::ZString() noexcept = default;

const char *ZString::asChar() const {
    return asUTF8();
}

ZStringArray::ZStringArray() noexcept = default;

unsigned ZStringArray::length() const {
    return TapiCast::stringArray(const_cast<ZStringArray &>(*this)).logicalSize();
}

const ZString &ZStringArray::operator[](unsigned index) const {
    auto &base = TapiCast::stringArray(const_cast<ZStringArray &>(*this));
    return static_cast<ZString &>(base[index]);
}

TstringArray &TapiCast::stringArray(ZStringArray &array) {
    return array;
}

ZObject::ZObject() noexcept : name_("null") {}
const ZObject ZObject::kNullObj;

ZFloatMatrix &ZFloatMatrix::setToIdentity() {
    for (int i = 0; i < 16; ++i)
        matrix[i / 4][i % 4] = i % 5 ? 0.0f : 1.0f;
    return *this;
}

// The render library.

float ZRenderUtil::noise1(float x) {
    return x / 2;
}

/// The text with its characters from last to first; "missing" is not found.
ZString ZRenderUtil::relativeFileName(const ZString &name, ZStatus *status) {
    std::wstring text(name.asW(), name.numChars());
    if (text == L"missing")
        *status = ZStatus(ZStatus::kNotFound, "no file \xe2\x80\x9cmissing\xe2\x80\x9d");
    std::reverse(text.begin(), text.end());
    ZString result;
    result.set(text.data(), static_cast<unsigned>(text.size()));
    return result;
}

ZStatus ZRenderView::startRender(unsigned width, unsigned height, bool, bool) {
    return width && height ? ZStatus() : ZStatus(ZStatus::kInvalidParameter, "no size");
}

ZStatus ZRenderView::endRender() {
    return {ZStatus::kUnknownParameter, "nobody sees this"};
}

ZHardwareRenderer::ZHardwareRenderer() = default;
ZHardwareRenderer::~ZHardwareRenderer() = default;

ZHardwareRenderer *ZHardwareRenderer::theRenderer() {
    static ZHardwareRenderer renderer;
    return &renderer;
}

/// The list as it came, with the back end's name behind it.
ZHardwareRenderer::DrawProcedureReturnCode
ZHardwareRenderer::getDrawProcedureListNames(ZString const &backEnd, CallLocation,
                                             ZStringArray &names) const {
    const unsigned count = names.length();
    TapiCast::stringArray(names).changeLogicalSizeTo(count + 1);
    TapiCast::stringArray(names)[count] = backEnd;
    return kSuccess;
}

static std::multimap<int, ZRenderCallback *> callbacks;

ZRenderData::ZRenderData() : xsize(7), ysize(5) {}
ZRenderCallback::ZRenderCallback() = default;
ZRenderCallback::~ZRenderCallback() {
    removeCallback(this);
}
bool ZRenderCallback::shadowCastCallback(ZRenderShadowData const &) {
    return false;
}
bool ZRenderCallback::renderCallback(ZRenderData const &) {
    return true;
}
bool ZRenderCallback::postProcessCallback(ZRenderData const &) {
    return false;
}
void ZRenderCallback::addCallback(ZRenderCallback *callback, int priority) {
    callbacks.emplace(priority, callback);
}
void ZRenderCallback::removeCallback(ZRenderCallback *callback) {
    std::erase_if(callbacks, [=](const auto &entry) { return entry.second == callback; });
}

/// Calls the callbacks on a thread of its own: how many returned true. For scripts, through ctypes.
extern "C" OPENQUIL_API int renderOnThread() {
    int changed = 0;
    std::thread([&changed] {
        for (const auto &[priority, callback] : callbacks)
            changed += callback->renderCallback(ZRenderData());
    }).join();
    return changed;
}

extern "C" OPENQUIL_API int capturedLocks() {
    return TpythonLock::fsCapturedCount;
}

extern "C" void init_OpenQuilRender();

/// Runs a script with the module compiled in.
int main(int argc, char **argv) {
    static char home[] = PYTHON2_HOME;
    Py_NoSiteFlag = Py_DontWriteBytecodeFlag = 1;
    Py_SetPythonHome(home);
    PyImport_AppendInittab("_OpenQuilRender", init_OpenQuilRender);
    Py_InitializeEx(0);
    PyEval_InitThreads();
    PySys_SetArgv(argc - 1, argv + 1);
    std::FILE *const script = std::fopen(argv[1], "r");
    return script ? PyRun_SimpleFileEx(script, argv[1], 1) : 2;
}
