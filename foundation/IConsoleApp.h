// IConsoleApp.h - the application context.
//
//   IConsoleApp     the application's base: its 19 virtual operations, in table order
//   getConsoleApp   the process's application object
#pragma once

#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"

#include <windows.h>

// An application derives from IConsoleApp and answers every operation below. The order
// of the declarations is the order of the table of virtual operations; callers rely on it,
// so the table holds these 19 entries and nothing else (hence no virtual destructor).
//
// The library calls slots 0, 1 and 5. The others are the application's contract with
// itself: the library never calls them.
//
// Each IConsoleApp, copies included, makes itself the process's application when it is
// constructed and withdraws when it is destroyed; getConsoleApp() then falls back to the
// most recently constructed one still alive. Construction and destruction belong to the
// thread that owns the windows.
class TESKWIN_API IConsoleApp {
public:
    IConsoleApp();
    IConsoleApp(IConsoleApp const &other);
    // Copies no registration: each object keeps its own place.
    IConsoleApp &operator=(IConsoleApp const &other);

    // The instance handle, as getInstance() gives it.
    operator HINSTANCE() const;

    // 0: the module instance that window classes are registered under.
    virtual HINSTANCE getInstance() const = 0;
    // 1: the module that holds the resources; 0 or (HINSTANCE)-1 when there is none.
    virtual HINSTANCE getResourceModule() const = 0;
    // 2: the command line the program was started with, without the program's name.
    virtual PString getCommandLine() const = 0;
    // 3: the show command the program was started with (SW_...).
    virtual int getShowCommand() const = 0;
    // 4: the full path of the program file.
    virtual PString getProgramPath() const = 0;
    // 5: the application's name, as its windows show it.
    virtual PString getAppName() const = 0;
    // 6: the name of the company or maker.
    virtual PString getCompanyName() const = 0;
    // 7: the version, as text.
    virtual PString getVersion() const = 0;
    // 8: the application's help file.
    virtual PString getHelpFile() const = 0;
    // 9: the folder that the application's documents start from.
    virtual PString getWorkingFolder() const = 0;
    // 10: the prefix of the application's temporary file names.
    virtual PString getTempPrefix() const = 0;
    // 11: the language of the user interface (a LANGID).
    virtual int getLanguage() const = 0;
    // 12: the code page that the application's texts are written in.
    virtual int getCodePage() const = 0;
    // 13: non-zero when a person can answer questions (message boxes, dialogs).
    virtual int isInteractive() const = 0;
    // 14: prepares the application before its first window; non-zero for success.
    virtual int initInstance() = 0;
    // 15: runs the application and gives its exit code.
    virtual int run() = 0;
    // 16: releases what initInstance took; gives the exit code.
    virtual int exitInstance() = 0;
    // 17: the application's string resource id for one of the library's string keys
    // (a GenericStringId), or 0 when it has none.
    virtual int getStringId(int key) const = 0;
    // 18: replaces the exit code the process will end with.
    virtual void setExitCode(int code) = 0;

protected:
    // Not virtual, to keep the table as it is; hence protected, so that no one deletes
    // an application through this base.
    ~IConsoleApp();

private:
    void enrol();

    IConsoleApp *olderApp;
    IConsoleApp *newerApp;
};

// The most recently constructed IConsoleApp that is still alive, or null.
TESKWIN_API IConsoleApp *getConsoleApp();
