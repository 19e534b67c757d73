#include "widgets/PStringResManager.h"

#include <cstdio>

namespace {

const int bufferSize = 4096;
// One slot more than the arguments passed, for the null that ends them.
const int argumentSlots = 99;

char const noHandleText[] = "String Resource Error, No handle available.";

PString errorText(char const *format, int key)
{
    char text[64];
    std::snprintf(text, sizeof text, format, key);
    return PString(text);
}

// The resource module of app, or null when it has none.
HINSTANCE resourceModuleOf(IConsoleApp *app)
{
    HINSTANCE module = app->getResourceModule();
    return module == reinterpret_cast<HINSTANCE>(-1) ? nullptr : module;
}

// Guards the process-wide manager while it is read or replaced.
class ManagerLock {
public:
    ManagerLock() { InitializeCriticalSection(&section); }
    ~ManagerLock() { DeleteCriticalSection(&section); }
    ManagerLock(ManagerLock const &) = delete;
    ManagerLock &operator=(ManagerLock const &) = delete;

    void enter() { EnterCriticalSection(&section); }
    void leave() { LeaveCriticalSection(&section); }

private:
    CRITICAL_SECTION section;
};

PStringResManager theStringResManager;
ManagerLock theStringResManagerLock;

class ManagerLockScope {
public:
    ManagerLockScope() { theStringResManagerLock.enter(); }
    ~ManagerLockScope() { theStringResManagerLock.leave(); }
    ManagerLockScope(ManagerLockScope const &) = delete;
    ManagerLockScope &operator=(ManagerLockScope const &) = delete;
};

void adoptResourceModule(IConsoleApp *app)
{
    HINSTANCE module = resourceModuleOf(app);
    if (module)
        theStringResManager = PStringResManager(module);
}

PString formatMessage(PString message, PList<PString> &arguments, int key)
{
    char *argumentArray[argumentSlots] = {};
    int count = 0;
    for (PString &argument : arguments) {
        if (count == argumentSlots - 1)
            break;
        argumentArray[count++] = argument;
    }
    PString output(bufferSize, ' ');
    if (!FormatMessageA(FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ARGUMENT_ARRAY,
                        static_cast<char const *>(message), 0, 0, output, bufferSize,
                        reinterpret_cast<va_list *>(argumentArray)))
        // Deliberate: the failure text is made and dropped; the caller gets the blank output.
        errorText("String Resource FormatMessage Error! (%d)", key);
    output.resize();
    return output;
}

} // namespace

PStringResManager::PStringResManager() : handle(GetModuleHandleA(nullptr))
{
}

PStringResManager::PStringResManager(IConsoleApp *app)
    : handle(app ? app->getResourceModule() : GetModuleHandleA(nullptr))
{
}

PStringResManager::PStringResManager(HINSTANCE instance) : handle(instance)
{
}

PStringResManager &PStringResManager::operator=(PStringResManager const &other)
{
    handle = other.handle;
    return *this;
}

PStringResManager::~PStringResManager()
{
    handle = nullptr;
}

int PStringResManager::load(int id, PString &text) const
{
    char buffer[bufferSize];
    if (LoadStringA(handle, id, buffer, bufferSize) < 1)
        return 0;
    text = PString(buffer);
    return 1;
}

PString PStringResManager::get(int id)
{
    if (!handle)
        return PString(noHandleText);
    PString text;
    if (!load(id, text))
        return errorText("String Resource Error! (%d)", id);
    return text;
}

PString PStringResManager::get(GenericStringId id)
{
    IConsoleApp *app = getConsoleApp();
    if (!handle || !app)
        return PString(noHandleText);
    // The application's table turns the key into an id of its resource module.
    const int resourceId = app->getStringId(id);
    PString text;
    // The error names the key, not the translated id.
    if (resourceId == 0 || !load(resourceId, text))
        return errorText("String Resource Error! (%d)", id);
    return text;
}

PString PStringResManager::getFormatMsg(int id, PList<PString> &arguments)
{
    return formatMessage(get(id), arguments, id);
}

PString PStringResManager::getFormatMsg(GenericStringId id, PList<PString> &arguments)
{
    return formatMessage(get(id), arguments, id);
}

PStringResManager *getStringResManager()
{
    ManagerLockScope lock;
    if (IConsoleApp *app = getConsoleApp())
        adoptResourceModule(app);
    return &theStringResManager;
}

void setStringResManager(IConsoleApp *app)
{
    ManagerLockScope lock;
    if (app)
        adoptResourceModule(app);
}

namespace {

// The answers of IsDBCSLeadByte, kept because strings ask them byte by byte.
unsigned char theLeadBytes[256];

} // namespace

LUtilStd::LUtilStd()
{
    for (int byte = 0; byte < 256; ++byte)
        theLeadBytes[byte] = IsDBCSLeadByte(static_cast<BYTE>(byte)) ? 1 : 0;
}

int LUtilStd::isLeadByte(unsigned char byte) const
{
    return theLeadBytes[byte];
}

LUtilStd PMultiString::theLanguageUtil;

PMultiString::PMultiString() = default;

PMultiString::PMultiString(char const *text) : PString(text)
{
}

PMultiString::PMultiString(PString const &text) : PString(text)
{
}

PMultiString::PMultiString(PMultiString const &other) = default;

PMultiString &PMultiString::operator=(PMultiString const &other)
{
    PString::operator=(other);
    return *this;
}

PMultiString::~PMultiString() = default;

int PMultiString::length() const
{
    unsigned char const *bytes = reinterpret_cast<unsigned char const *>(static_cast<char const *>(*this));
    int byteLength = PString::length();
    int characters = 0;
    for (int i = 0; i < byteLength; ++i, ++characters) {
        if (theLanguageUtil.isLeadByte(bytes[i]))
            ++i;
    }
    return characters;
}

unsigned int PMultiString::operator[](int index) const
{
    if (index < 0)
        return 0;
    unsigned char const *bytes = reinterpret_cast<unsigned char const *>(static_cast<char const *>(*this));
    int byteLength = PString::length();
    int characters = 0;
    for (int i = 0; i < byteLength; ++i, ++characters) {
        int lead = theLanguageUtil.isLeadByte(bytes[i]);
        if (characters == index) {
            // A trailing lead byte pairs with the terminating zero.
            return lead ? (static_cast<unsigned int>(bytes[i]) << 8) | bytes[i + 1] : bytes[i];
        }
        if (lead)
            ++i;
    }
    return 0;
}

PString PMultiString::getPString()
{
    return PString(*this);
}

void PMultiString::setPString(PString const &text)
{
    PString::operator=(text);
}
