// make_beep_wav.cpp — writes the BEEP sound, beep.wav: a short tone of our own.
//
// Built and run by the build (usage: make_beep_wav OUT.wav). The tone is
// 880 Hz for 150 ms, 16-bit mono PCM at 22050 Hz, faded in and out over
// 5 ms so that it does not click.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <vector>

namespace {

constexpr int rate = 22050;
constexpr double frequency = 880.0;
constexpr double seconds = 0.15;
constexpr double fade = 0.005;
constexpr double amplitude = 0.4 * 32767;

void put16(std::vector<unsigned char>& out, unsigned v) {
    out.push_back(static_cast<unsigned char>(v & 0xFF));
    out.push_back(static_cast<unsigned char>((v >> 8) & 0xFF));
}

void put32(std::vector<unsigned char>& out, std::uint32_t v) {
    put16(out, v & 0xFFFF);
    put16(out, v >> 16);
}

void put_tag(std::vector<unsigned char>& out, const char* tag) { out.insert(out.end(), tag, tag + 4); }

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_beep_wav OUT.wav\n");
        return 2;
    }
    const int samples = static_cast<int>(rate * seconds);
    std::vector<unsigned char> wav;
    put_tag(wav, "RIFF");
    put32(wav, static_cast<std::uint32_t>(36 + samples * 2));
    put_tag(wav, "WAVE");
    put_tag(wav, "fmt ");
    put32(wav, 16);
    put16(wav, 1);  // PCM
    put16(wav, 1);  // mono
    put32(wav, rate);
    put32(wav, rate * 2);  // bytes per second
    put16(wav, 2);         // block size
    put16(wav, 16);        // bits per sample
    put_tag(wav, "data");
    put32(wav, static_cast<std::uint32_t>(samples * 2));
    const double pi = std::acos(-1.0);
    for (int i = 0; i < samples; ++i) {
        const double t = static_cast<double>(i) / rate;
        const double envelope = std::fmin(1.0, std::fmin(t / fade, (seconds - t) / fade));
        const auto v = static_cast<std::int16_t>(std::lround(amplitude * envelope * std::sin(2 * pi * frequency * t)));
        put16(wav, static_cast<std::uint16_t>(v));
    }
    std::FILE* f = std::fopen(argv[1], "wb");
    if (f == nullptr || std::fwrite(wav.data(), 1, wav.size(), f) != wav.size() || std::fclose(f) != 0) {
        std::perror(argv[1]);
        return 1;
    }
    return 0;
}
