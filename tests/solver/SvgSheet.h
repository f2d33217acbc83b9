#pragma once

#include "solver/SvgPicture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

/// A picture taken apart: its elements and where its texts lie, about.
struct SvgSheet {
    struct Box {
        double left, top, right, bottom;
        std::string text;
        std::string anchor;
    };
    std::map<std::string, int> elements;
    std::vector<Box> texts;
    double width = 0, height = 0;
    std::string fault; ///< why it is not well-formed; empty: it is

    explicit SvgSheet(const std::string& svg) { parse(svg); }

    bool holds(const std::string& text) const {
        return std::any_of(texts.begin(), texts.end(),
                           [&](const Box& box) { return box.text.find(text) != std::string::npos; });
    }

    /// Well-formed, every text on the sheet, no two over each other.
    void expectReadable(const std::string& what) const {
        EXPECT_EQ(fault, "") << what;
        EXPECT_GT(texts.size(), 2u) << what;
        for (std::size_t i = 0; i < texts.size(); ++i) {
            const Box& a = texts[i];
            EXPECT_TRUE(a.left >= 0 && a.top >= 0 && a.right <= width && a.bottom <= height)
                << what << ": \"" << a.text << "\" leaves the sheet: " << a.left << " to " << a.right << ", "
                << a.top << " to " << a.bottom;
            for (std::size_t j = 0; j < i; ++j) {
                const Box& b = texts[j];
                EXPECT_FALSE(a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom)
                    << what << ": \"" << a.text << "\" lies over \"" << b.text << "\"";
            }
        }
    }

  private:
    using Attributes = std::map<std::string, std::string>;

    static double number(const Attributes& attributes, const char* name) {
        const auto found = attributes.find(name);
        return found == attributes.end() ? 0 : std::strtod(found->second.c_str(), nullptr);
    }

    /// `tag` is what stands between < and >, without a closing slash.
    bool readTag(const std::string& tag, std::string& name, Attributes& attributes) {
        std::size_t at = tag.find_first_of(" \n");
        name = tag.substr(0, at);
        while (at != std::string::npos && (at = tag.find_first_not_of(" \n", at)) != std::string::npos) {
            const std::size_t equals = tag.find("=\"", at);
            if (equals == std::string::npos) return false;
            const std::size_t end = tag.find('"', equals + 2);
            if (end == std::string::npos) return false;
            const std::string value = tag.substr(equals + 2, end - equals - 2);
            if (!attributes.emplace(tag.substr(at, equals - at), value).second) return false;
            if (value.find_first_of("<&") != std::string::npos) return false;
            at = end + 1;
        }
        return true;
    }

    static std::string plain(std::string text) {
        for (const auto& [code, sign] :
             std::map<std::string, std::string>{{"&lt;", "<"}, {"&gt;", ">"}, {"&amp;", "&"}})
            for (std::size_t at = 0; (at = text.find(code, at)) != std::string::npos; ++at)
                text.replace(at, code.size(), sign);
        return text;
    }

    void addText(const Attributes& attributes, const std::string& text) {
        const double size = number(attributes, "font-size");
        const double length = solver::svgTextWidth(text, size);
        const std::string& anchor = attributes.at("text-anchor");
        const double before = anchor == "end" ? length : anchor == "middle" ? length / 2 : 0;
        const double x = number(attributes, "x"), y = number(attributes, "y");
        if (attributes.count("transform")) // read from below
            texts.push_back(
                {x - 0.8 * size, y - (length - before), x + 0.2 * size, y + before, text, anchor});
        else
            texts.push_back({x - before, y - 0.8 * size, x + length - before, y + 0.2 * size, text, anchor});
    }

    void parse(const std::string& svg) {
        std::vector<std::pair<std::string, Attributes>> open;
        std::size_t at = 0;
        while (at < svg.size()) {
            const std::size_t tagStart = svg.find('<', at);
            const std::string content = svg.substr(at, tagStart - at);
            if (open.empty() && content.find_first_not_of(" \n") != std::string::npos) fault = "text outside";
            if (!open.empty() && open.back().first == "text" && !content.empty())
                addText(open.back().second, plain(content));
            if (tagStart == std::string::npos) break;
            const std::size_t tagEnd = svg.find('>', tagStart);
            if (tagEnd == std::string::npos) {
                fault = "a tag has no end";
                return;
            }
            std::string tag = svg.substr(tagStart + 1, tagEnd - tagStart - 1);
            at = tagEnd + 1;
            if (tag.starts_with('/')) {
                if (open.empty() || open.back().first != tag.substr(1)) {
                    fault = "</" + tag.substr(1) + "> closes nothing";
                    return;
                }
                open.pop_back();
                continue;
            }
            const bool closed = tag.ends_with('/');
            if (closed) tag.pop_back();
            std::string name;
            Attributes attributes;
            if (!readTag(tag, name, attributes)) fault = "odd attributes in <" + tag + ">";
            ++elements[name];
            if (name == "svg") {
                width = number(attributes, "width");
                height = number(attributes, "height");
            }
            if (!closed) open.emplace_back(name, attributes);
        }
        if (!open.empty()) fault = "<" + open.back().first + "> is not closed";
    }
};
