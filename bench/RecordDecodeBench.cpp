// Turning the 2 MiB client document into ActionRequest records: the parse
// alone, and the parse plus decoding every record (the dispatcher's whole
// work per batch). The per-record counter gives the cost of one request.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "base/xml/SimpleXML.h"
#include "bench/ClientDocument.h"
#include "protocol/ActionRequest.h"
#include "protocol/XMLSerialize.h"

namespace {

const std::string& Batch() {
    static const std::string batch = ClientDocument(2 * 1024 * 1024 - 1024);
    return batch;
}

void ParseOnly(benchmark::State& state) {
    std::size_t records = 0;
    for (auto _ : state) {
        std::unique_ptr<XMLElement> root = SimpleXML::Parse(Batch());
        records = root->Children().size();
        benchmark::DoNotOptimize(root);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * Batch().size()));
    state.counters["per_record"] = benchmark::Counter(static_cast<double>(state.iterations() * records),
                                                      benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void ParseAndDecode(benchmark::State& state) {
    std::size_t records = 0;
    for (auto _ : state) {
        std::unique_ptr<XMLElement> root = SimpleXML::Parse(Batch());
        std::vector<ActionRequest> actions;
        actions.reserve(root->Children().size());
        for (const XMLElement& message : root->Children()) {
            ActionRequest action;
            XMLLoad(message, action);
            actions.push_back(std::move(action));
        }
        records = actions.size();
        benchmark::DoNotOptimize(actions);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * Batch().size()));
    state.counters["records"] = static_cast<double>(records);
    state.counters["per_record"] = benchmark::Counter(static_cast<double>(state.iterations() * records),
                                                      benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

BENCHMARK(ParseOnly)->Name("ClientBatch/parse/2MiB")->Unit(benchmark::kMillisecond);
BENCHMARK(ParseAndDecode)->Name("ClientBatch/parse+decode/2MiB")->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
