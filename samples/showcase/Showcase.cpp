// The showcase application: exercises the library headless and leaves a log in the
// current folder (showcase.log).
#include <TeskWin.h>

#include <cstdio>

namespace {

// The application context the library sees; only the slots the library calls carry meaning.
class ShowcaseApp : public IConsoleApp {
public:
    explicit ShowcaseApp(HINSTANCE instance) : instance(instance) {}

    HINSTANCE getInstance() const override { return instance; }
    HINSTANCE getResourceModule() const override { return instance; }
    PString getCommandLine() const override { return PString(""); }
    int getShowCommand() const override { return SW_SHOWNORMAL; }
    PString getProgramPath() const override { return PString("showcase.exe"); }
    PString getAppName() const override { return PString("TeskWin Showcase"); }
    PString getCompanyName() const override { return PString("TeskWin"); }
    PString getVersion() const override { return PString("0.1"); }
    PString getHelpFile() const override { return PString(""); }
    PString getWorkingFolder() const override { return PString("."); }
    PString getTempPrefix() const override { return PString("shw"); }
    int getLanguage() const override { return 0x0409; }
    int getCodePage() const override { return 1252; }
    int isInteractive() const override { return 0; }
    int initInstance() override { return 1; }
    int run() override { return 0; }
    int exitInstance() override { return exitCode; }
    int getExitCode() const override { return exitCode; }
    void setExitCode(int code) override { exitCode = code; }

private:
    HINSTANCE instance;
    int exitCode = 0;
};

// Collects the log's lines and writes them out at the end.
class ShowcaseLog {
public:
    void line(char const *text) { lines.add(PString(text)); }

    void linef(char const *format, double a, double b = 0, double c = 0)
    {
        char buffer[256];
        std::snprintf(buffer, sizeof buffer, format, a, b, c);
        line(buffer);
    }

    int save(char const *name)
    {
        PFile file;
        if (!file.open(PString(name), PFile::writeAccess, PFile::shareNone, PFile::createAlways))
            return 0;
        for (unsigned int i = 0; i < lines.length(); ++i) {
            PString text = lines(i) + "\r\n";
            if (file.write(static_cast<char *>(text), text.length()) != static_cast<long>(text.length()))
                return 0;
        }
        return 1;
    }

private:
    PList<PString> lines;
};

void showContainers(ShowcaseLog &log)
{
    PList<PString> planets;
    for (char const *name : {"Mercury", "Venus", "Earth", "Mars"})
        planets.add(PString(name));
    planets.insert(PString("Sun"), 0);
    log.line("A list with a cursor, Sun inserted first:");
    for (unsigned int i = 0; i < planets.length(); ++i)
        log.line(PString("  ") + planets(i));

    PHashTable<PString, HashedId> names(211);
    names.add(PString("five"), HashedId(5));
    names.add(PString("two hundred sixteen"), HashedId(216));
    PString const *found = names.lookup(HashedId(216));
    log.line(PString("Hash table, id 216 (shares a bucket with 5): ") + (found ? *found : PString("missing")));
}

void showGeometryAndColour(ShowcaseLog &log)
{
    PTPoint<long> a(3, 4), origin(0, 0);
    log.linef("Distance from (3, 4) to the origin: %g", a.distance(origin));

    GColor teal(0, 128, 128);
    GHSVColor hsv(teal);
    log.linef("Teal as hue, saturation, value: %.1f %.3f %.3f", hsv.getH(), hsv.getS(), hsv.getV());
    hsv.getH() += 180;
    GColor opposite(hsv);
    log.linef("Its opposite hue: red %g green %g blue %g", opposite.getR(), opposite.getG(), opposite.getB());
}

void showErrorLog(ShowcaseLog &log)
{
    LogErrorMessage(IErrorMessage(PString("a warning the application reads back"), warningErrorMessage));
    log.linef("Entries in the error log: %g", getErrorLogCount());
}

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int)
{
    ShowcaseApp app(instance);
    ShowcaseLog log;
    log.line(PString("TeskWin showcase: ") + app.getAppName());
    showContainers(log);
    showGeometryAndColour(log);
    showErrorLog(log);
    log.line("Done.");
    return log.save("showcase.log") ? 0 : 1;
}
