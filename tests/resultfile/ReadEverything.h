#pragma once

#include "base/Checksum.h"
#include "resultfile/ResultFile.h"

#include <filesystem>
#include <string>

/// Reads everything that a file holds; a checksum of it all, or the first error.
inline Result<std::uint64_t> readEverything(const std::filesystem::path& path) {
    const auto reader = resultfile::Reader::open(path);
    if (!reader) return reader.error();
    Checksum sum;
    const auto addText = [&](const std::string& text) {
        sum.add(std::as_bytes(std::span(text.c_str(), text.size() + 1)));
    };
    const auto& contents = reader->contents();
    for (const auto* text : {&contents.analysis, &contents.producer, &contents.inputChecksum})
        addText(*text);
    for (const std::string& source : contents.sources)
        addText(source);
    for (auto&& numbers : {reader->nodeNumbers(), reader->elementNumbers(), reader->elementCornerCounts()}) {
        if (!numbers) return numbers.error();
        sum.add(std::as_bytes(std::span(*numbers)));
    }
    for (std::size_t c = 0; c < contents.cases.size(); ++c) {
        addText(contents.cases[c].name);
        for (std::size_t s = 0; s < contents.cases[c].steps.size(); ++s) {
            const auto& step = contents.cases[c].steps[s];
            addText(step.name);
            sum.add(std::as_bytes(std::span(&step.value, 1)));
            for (const auto& component : step.components) {
                const auto values = reader->values(c, s, component.id);
                if (!values) return values.error();
                if (values->size() != component.count) return Error{"a count differs"};
                auto stream = reader->stream(c, s, component.id);
                if (!stream) return stream.error();
                std::vector<float> streamed(values->size());
                const auto half = std::span(streamed).first(streamed.size() / 2);
                const auto rest = std::span(streamed).subspan(half.size());
                if (auto read = stream->next(half); !read) return read.error();
                if (auto read = stream->next(rest); !read) return read.error();
                if (streamed != *values) return Error{"the stream of a table differs"};
                if (stream->next(std::span(streamed).first(streamed.empty() ? 0 : 1)) && !streamed.empty())
                    return Error{"a stream goes on beyond its end"};
                sum.add(std::as_bytes(std::span(*values)));
                addText(std::to_string(component.id) + component.items +
                        std::to_string(static_cast<int>(component.location)));
                if (component.items.empty()) continue;
                const auto items = reader->items(component.items);
                if (!items) return items.error();
                sum.add(std::as_bytes(std::span(*items)));
            }
        }
    }
    return sum.value();
}
