// imagefile_fuzz - mutated image files through PImage::load and PPicture::load.
//
//   imagefile_fuzz [count] [seed]
//
// Seed files of every format and depth are made first, by the library from pictures written
// byte by byte as .bmp files. Each input is one of them, mutated by a generator fixed by the
// seed (bit flips, byte overwrites with boundary values, cuts, duplicated and deleted runs,
// 32-bit fields set to huge values). Every input is loaded from memory through PImage; one in
// eight is also written as a file, under its own extension or sometimes another's, and loaded
// through PImage and PPicture. The test build's guarded allocator traps any access past a
// block. A fault is a load that succeeds without a usable image, a positive result, or a crash
// (the unhandled-exception filter reports the input and the program ends with 3).
#include "imagefiles/ImageFiles.h"

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

// A small generator whose sequence is fixed by its seed on every platform.
class Random {
public:
    explicit Random(std::uint64_t seed) : state(seed * 0x9E3779B97F4A7C15ULL + 1) {}
    std::uint32_t next()
    {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        return static_cast<std::uint32_t>(state >> 16);
    }
    std::size_t below(std::size_t n) { return n ? next() % n : 0; }

private:
    std::uint64_t state;
};

struct Seed {
    std::string format;
    std::vector<unsigned char> bytes;
};

char const *const extensions[] = {".png", ".jpg", ".tif", ".gif", ".bmp", ".dat"};

long long currentInput = -1;
long long loaded = 0, refused = 0;

// One in this many inputs is also written and loaded as a file.
const std::size_t fileShare = 8;

// 1 for a fault of a PImage load: a success without a usable image, or a positive result.
int checkImage(PImage &image, int result, long long input)
{
    if (result < 0) {
        ++refused;
        return 0;
    }
    if (result > 0) {
        std::printf("FAULT: input %lld gave the positive result %d\n", input, result);
        return 1;
    }
    ++loaded;
    if (image.getWidth() <= 0 || image.getHeight() <= 0 || !image.getHeader() ||
        (image.getHeader()->biBitCount != 8 && image.getHeader()->biBitCount != 24)) {
        std::printf("FAULT: input %lld loaded without a usable image\n", input);
        return 1;
    }
    return 0;
}

LONG WINAPI reportCrash(EXCEPTION_POINTERS *info)
{
    std::printf("FAULT: exception 0x%08lx at input %lld\n",
                static_cast<unsigned long>(info->ExceptionRecord->ExceptionCode), currentInput);
    std::fflush(stdout);
    ExitProcess(3);
}

std::vector<Seed> makeSeeds(TempPath const &work)
{
    struct Kind {
        char const *extension;
        int format;
        std::vector<int> depths;
    };
    const Kind kinds[] = {{".png", PImage::formatPng, {1, 4, 8, 24}},
                          {".tif", PImage::formatTiff, {1, 4, 8, 24}},
                          {".gif", PImage::formatGif, {1, 4, 8}},
                          {".jpg", PImage::formatJpeg, {24}},
                          {".bmp", PImage::formatBmp, {1, 4, 8, 24}}};
    std::vector<Seed> seeds;
    const std::string bmp = work.path + "_seed.bmp";
    for (Kind const &kind : kinds)
        for (int depth : kind.depths) {
            const TestPicture picture = TestPicture::pattern(13 + depth, 9, depth);
            writeBytes(bmp, picture.bmpBytes());
            PImage image;
            const std::string out = work.path + "_seed" + kind.extension;
            if (image.load(PString(bmp.c_str())) != 0 || image.save(PString(out.c_str()), kind.format) != 0) {
                std::printf("seed %s at %d bits could not be made\n", kind.extension, depth);
                continue;
            }
            seeds.push_back(Seed{kind.extension, readBytes(out)});
            DeleteFileA(out.c_str());
        }
    DeleteFileA(bmp.c_str());
    return seeds;
}

// The platform's own calls: quicker under emulation than the C library's streams.
bool writeInput(std::string const &path, std::vector<unsigned char> const &bytes)
{
    HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                              nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    DWORD written = 0;
    const BOOL ok = bytes.empty() || WriteFile(file, bytes.data(), DWORD(bytes.size()), &written, nullptr);
    CloseHandle(file);
    return ok && written == bytes.size();
}

std::vector<unsigned char> mutate(std::vector<unsigned char> bytes, Random &random)
{
    static const unsigned char boundary[] = {0x00, 0x01, 0x7F, 0x80, 0xFF, 0xFE, 0x10, 0x20, 0x40};
    const int rounds = 1 + static_cast<int>(random.below(4));
    for (int round = 0; round < rounds && !bytes.empty(); ++round) {
        const std::size_t at = random.below(bytes.size());
        switch (random.below(7)) {
        case 0: bytes[at] ^= static_cast<unsigned char>(1u << random.below(8)); break;
        case 1: bytes[at] = boundary[random.below(sizeof boundary)]; break;
        case 2: bytes.resize(at); break;
        case 3: {
            const std::size_t length = 1 + random.below(16);
            std::vector<unsigned char> run(bytes.begin() + long(at),
                                           bytes.begin() + long(at + length < bytes.size() ? at + length : bytes.size()));
            bytes.insert(bytes.begin() + long(random.below(bytes.size())), run.begin(), run.end());
            break;
        }
        case 4: {
            const std::size_t length = 1 + random.below(16);
            bytes.erase(bytes.begin() + long(at), bytes.begin() + long(at + length < bytes.size() ? at + length : bytes.size()));
            break;
        }
        case 5:
            // A 32-bit field, in either byte order, set to a huge or negative value.
            if (at + 4 <= bytes.size()) {
                const std::uint32_t values[] = {0xFFFFFFFFu, 0x7FFFFFFFu, 0x80000000u, 0x00010000u, 0x0000FFFFu};
                const std::uint32_t v = values[random.below(5)];
                for (int i = 0; i < 4; ++i)
                    bytes[at + i] = static_cast<unsigned char>(v >> (8 * i));
            }
            break;
        default: bytes[at] = static_cast<unsigned char>(random.next()); break;
        }
    }
    return bytes;
}

} // namespace

int main(int argc, char **argv)
{
    const long long count = argc > 1 ? std::atoll(argv[1]) : 1000;
    const unsigned long long seedValue = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1;
    SetUnhandledExceptionFilter(reportCrash);
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);

    TempPath work("fuzz");
    const std::vector<Seed> seeds = makeSeeds(work);
    if (seeds.size() < 16) {
        std::printf("only %zu seed files\n", seeds.size());
        return 2;
    }
    Random random(seedValue);
    long long faults = 0;
    const auto start = std::chrono::steady_clock::now();
    std::chrono::steady_clock::duration memoryLoading{}, fileLoading{};
    long long files = 0;
    std::vector<std::string> paths;
    for (char const *extension : extensions)
        paths.push_back(work.path + "_input" + extension);
    for (long long input = 0; input < count; ++input) {
        currentInput = input;
        Seed const &seed = seeds[random.below(seeds.size())];
        std::vector<unsigned char> bytes = mutate(seed.bytes, random);
        // Every input from memory; one in fileShare also as a file, under its own extension or,
        // sometimes, another's, through both classes.
        const bool asFile = random.below(fileShare) == 0;
        const std::size_t extension = random.below(4) == 0 ? random.below(6) : 0;
        const auto t0 = std::chrono::steady_clock::now();
        PImage image;
        int imageResult = image.load(bytes.empty() ? nullptr : bytes.data(), int(bytes.size()));
        faults += checkImage(image, imageResult, input);
        const auto t1 = std::chrono::steady_clock::now();
        memoryLoading += t1 - t0;
        if (!asFile)
            continue;
        std::string const &path = extension ? paths[extension] : work.path + "_input" + seed.format;
        if (!writeInput(path, bytes)) {
            std::printf("input %lld could not be written\n", input);
            return 2;
        }
        ++files;
        PImage fromFile;
        imageResult = fromFile.load(PString(path.c_str()));
        faults += checkImage(fromFile, imageResult, input);
        PPicture picture;
        const int pictureResult = picture.load(PString(path.c_str()));
        if ((pictureResult == 0) != picture.isValid() || pictureResult > 0) {
            std::printf("FAULT: input %lld: picture result %d, valid %d\n", input, pictureResult, int(picture.isValid()));
            ++faults;
        }
        if (pictureResult == 0) {
            int w = 0, h = 0;
            picture.getDimension(w, h);
            if (w <= 0 || h <= 0) {
                std::printf("FAULT: input %lld: picture of %d by %d\n", input, w, h);
                ++faults;
            }
        }
        fileLoading += std::chrono::steady_clock::now() - t1;
    }
    for (std::string const &path : paths)
        DeleteFileA(path.c_str());
    for (Seed const &seed : seeds)
        DeleteFileA((work.path + "_input" + seed.format).c_str());
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("%lld inputs from %zu seed files (seed %llu) in %.1f s, %lld of them also as files: %lld loaded, "
                "%lld refused, %lld faults\n",
                count, seeds.size(), seedValue, seconds, files, loaded, refused, faults);
    std::printf("from memory %.1f s, as files %.1f s\n", std::chrono::duration<double>(memoryLoading).count(),
                std::chrono::duration<double>(fileLoading).count());
    return faults ? 1 : 0;
}
