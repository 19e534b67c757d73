// Filter.cpp - a program without a console or a window: it loads a picture, filters it and
// saves the result.
//
//   filter.exe <input.bmp> <output.bmp>
//
// The exit code says how it went: 0 done, 1 wrong arguments, 2 the picture could not be
// read, 3 a filter refused it, 4 the result could not be written.
#include <TeskWin.h>

#include <string>

namespace {

enum ExitCode { exitDone, exitUsage, exitNotRead, exitNotFiltered, exitNotWritten };

// The rank and convolution filters look at 3 by 3 neighbourhoods.
const unsigned char window = 3;
const int median = 4;
const int sharpen = 14;

// The two file names, split at the first space outside double quotes.
bool splitArguments(std::string const &line, std::string &input, std::string &output)
{
    std::string *target = &input;
    bool quoted = false;
    for (char c : line) {
        if (c == '"')
            quoted = !quoted;
        else if (c == ' ' && !quoted && target == &input && !input.empty())
            target = &output;
        else if (c != ' ' || quoted || !target->empty())
            *target += c;
    }
    return !input.empty() && !output.empty();
}

} // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR commandLine, int)
{
    std::string input, output;
    if (!splitArguments(commandLine, input, output))
        return exitUsage;

    // The library's .bmp reader: 1, 4 and 8 bits with a colour table.
    GDiBitmap picture;
    if (picture.load(PString(input.c_str())) != 0)
        return exitNotRead;

    // A median takes the noise away; sharpening brings the edges back.
    if (picture.NLFilter(median, window) != GImage::resultOk || picture.LFilter(sharpen, window) != GImage::resultOk)
        return exitNotFiltered;

    return picture.write(PString(output.c_str())) == GImage::resultOk ? exitDone : exitNotWritten;
}
