// Reading a client document into a tree: ours, expat building the same
// XMLElement tree through its callbacks, and pugixml's own DOM. Two inputs: a
// 2 MiB batch of action requests (the largest frame the pipe accepts) and a
// single-message document.
#include <benchmark/benchmark.h>
#include <expat.h>

#include <memory>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "base/xml/SimpleXML.h"
#include "bench/ClientDocument.h"

namespace {

const std::string& Input(bool large) {
    static const std::string batch = ClientDocument(2 * 1024 * 1024 - 1024);
    static const std::string single = ClientDocument(0);
    return large ? batch : single;
}

// Expat's callbacks building our tree.
struct ExpatTree {
    std::unique_ptr<XMLElement> root;
    std::vector<XMLElement*> open;

    static void Start(void* self, const XML_Char* name, const XML_Char** atts) {
        auto& tree = *static_cast<ExpatTree*>(self);
        XMLElement::AttributeMap attributes;
        for (; atts[0] != nullptr; atts += 2) attributes.try_emplace(atts[0], atts[1]);
        if (tree.open.empty()) {
            tree.root = std::make_unique<XMLElement>(name, attributes);
            tree.open.push_back(tree.root.get());
        } else {
            tree.open.push_back(&tree.open.back()->AddChildElement(XMLElement(name, attributes)));
        }
    }
    static void End(void* self, const XML_Char*) { static_cast<ExpatTree*>(self)->open.pop_back(); }
    static void Text(void* self, const XML_Char* s, int len) {
        auto& tree = *static_cast<ExpatTree*>(self);
        if (!tree.open.empty()) tree.open.back()->AppendCharacters(UStringRef<UTF8>(s, static_cast<std::size_t>(len)));
    }
};

void Ours(benchmark::State& state, bool large) {
    const std::string& doc = Input(large);
    for (auto _ : state) {
        std::unique_ptr<XMLElement> root = SimpleXML::Parse(UStringRef<UTF8>(doc));
        benchmark::DoNotOptimize(root.get());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * doc.size()));
}

void Expat(benchmark::State& state, bool large) {
    const std::string& doc = Input(large);
    for (auto _ : state) {
        ExpatTree tree;
        XML_Parser parser = XML_ParserCreate(nullptr);
        XML_SetUserData(parser, &tree);
        XML_SetElementHandler(parser, ExpatTree::Start, ExpatTree::End);
        XML_SetCharacterDataHandler(parser, ExpatTree::Text);
        if (XML_Parse(parser, doc.data(), static_cast<int>(doc.size()), 1) != XML_STATUS_OK) {
            state.SkipWithError("expat rejected the document");
        }
        XML_ParserFree(parser);
        benchmark::DoNotOptimize(tree.root.get());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * doc.size()));
}

void Pugixml(benchmark::State& state, bool large) {
    const std::string& doc = Input(large);
    for (auto _ : state) {
        pugi::xml_document tree;
        if (!tree.load_buffer(doc.data(), doc.size())) {
            state.SkipWithError("pugixml rejected the document");
        }
        benchmark::DoNotOptimize(tree.first_child().internal_object());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * doc.size()));
}

const int kRegistered = [] {
    for (bool large : {true, false}) {
        const std::string size = large ? "2MiB" : "1msg";
        benchmark::RegisterBenchmark(("XmlParse/ours/" + size).c_str(), Ours, large);
        benchmark::RegisterBenchmark(("XmlParse/expat/" + size).c_str(), Expat, large);
        benchmark::RegisterBenchmark(("XmlParse/pugixml/" + size).c_str(), Pugixml, large);
    }
    return 0;
}();

}  // namespace

BENCHMARK_MAIN();
