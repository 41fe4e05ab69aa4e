// Rendering a two-argument text under a translation, against snprintf with the
// equivalent printf format; and parsing a 5,000-line translation file.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "text/LocalizedStrings.h"
#include "text/UFormat.h"

namespace {

const char kKey[] = "Your administrator has disabled this feature between {start} and {end}.";
const char kTranslation[] = "Funktion gesperrt von {start} bis {end}.";

// A file of distinct keys with the benchmarked key somewhere in the middle.
std::string TranslationFile(int lines) {
    std::string bytes;
    for (int i = 0; i < lines; ++i) {
        if (i == lines / 2) {
            bytes += std::string(kKey) + "\t" + kTranslation + "\n";
        }
        bytes += "Caption number " + std::to_string(i) + " with {value}\tBeschriftung " +
                 std::to_string(i) + " mit {value}\n";
    }
    return bytes;
}

void FormatRenderOurs(benchmark::State& state) {
    const std::string bytes = TranslationFile(5000);
    const FormatOverrideSet set(bytes);
    FormatOverrideContext context;
    const FormatOverrideScope scope(set, context);
    for (auto _ : state) {
        AutoUString<UTF8> text =
            MakeUString(FormatPlusArguments(UFormat(kKey, kKey, context), "23:30:00", "01:15:00"));
        benchmark::DoNotOptimize(text.Data());
    }
}
BENCHMARK(FormatRenderOurs)->Name("FormatRender/ours/2args");

// The same text through its catalogue function: global context, two local
// times of day, and the transcoding into the locale's encoding.
void FormatRenderCatalogue(benchmark::State& state) {
    const std::string bytes = TranslationFile(5000);
    const FormatOverrideSet set(bytes);
    const FormatOverrideScope scope(set, GlobalFormatOverrideContext());
    const Instant start(1795822200LL * 1000000), end(1795828500LL * 1000000);
    for (auto _ : state) {
        AutoNullTerminated<char> text = LocalizedStrings::QuietModeExplanation(start, end);
        benchmark::DoNotOptimize(text.Get());
    }
}
BENCHMARK(FormatRenderCatalogue)->Name("FormatRender/ours/catalogue");

void FormatRenderSnprintf(benchmark::State& state) {
    char buffer[256];
    for (auto _ : state) {
        std::snprintf(buffer, sizeof buffer, "Funktion gesperrt von %s bis %s.", "23:30:00", "01:15:00");
        std::string text(buffer);
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(FormatRenderSnprintf)->Name("FormatRender/snprintf/2args");

void FormatFileParse(benchmark::State& state) {
    const std::string bytes = TranslationFile(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const FormatOverrideSet set(bytes);
        benchmark::DoNotOptimize(set.Entries().data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes.size()));
}
BENCHMARK(FormatFileParse)->Name("FormatFileParse/ours")->Arg(5000);

}  // namespace

BENCHMARK_MAIN();
