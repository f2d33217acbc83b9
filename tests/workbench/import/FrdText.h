#pragma once

#include <cstdarg>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

enum class FrdForm { Short, Long, Binary };

/// Writes result files as the solver does; binary ones on little-endian machines.
class FrdText {
  public:
    explicit FrdText(FrdForm form = FrdForm::Long)
        : form_(form) {
        text_ = "    1C\n    1UUSER\n    1UPGM               CalculiX\n";
    }

    FrdText& mesh(const std::vector<int>& nodes, const std::vector<int>& elements) {
        add("    2C                  %12d%37s%d\n", int(nodes.size()), "", binary() ? 3 : int(form_));
        for (const int node : nodes)
            if (binary())
                bytes(node, 0.0, 0.0, 0.0);
            else
                row(node, {0, 0, 0});
        endBlock();
        add("    3C                  %12d%37s%d\n", int(elements.size()), "", int(form_));
        for (const int element : elements)
            if (binary()) {
                bytes(element, kLine, 0, 1, 1, 2);
            } else {
                add(isShort() ? " -1%5d" : " -1%10d", element);
                add("%5d    0    1\n", kLine);
                add(isShort() ? " -2%5d%5d\n" : " -2%10d%10d\n", 1, 2);
            }
        return endBlock();
    }

    /// The header of a block up to its first row; "ALL" is a component without values.
    FrdText& header(const std::string& name, const std::vector<std::string>& components, int nodeCount,
                    int step = 1, int increment = 1, double value = 1, int mode = 0) {
        add("    1PSTEP %25d %11d %11d\n", ++blocks_, increment, step);
        if (mode > 0) add("    1PMODE %25d\n", mode);
        add("  100CL  %3d%12.5E%12d%20s%2d%5d%10s%2d\n", 100 + blocks_, value, nodeCount, "", 0, 1, "",
            int(form_));
        add(" -4  %-8s%5d    1\n", name.c_str(), int(components.size()));
        for (const std::string& component : components)
            add(" -5  %-8s    1    2    1    0%s\n", component.c_str(), component == "ALL" ? "    1ALL" : "");
        return *this;
    }

    FrdText& row(int node, const std::vector<double>& values) {
        if (binary()) {
            bytes(node);
            for (const double value : values)
                bytes(float(value));
            return *this;
        }
        add(isShort() ? " -1%5d" : " -1%10d", node);
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (i > 0 && i % 6 == 0) add(isShort() ? "\n -2%5s" : "\n -2%10s", "");
            add("%12.5E", values[i]);
        }
        text_ += "\n";
        return *this;
    }

    FrdText& endBlock() {
        if (!binary()) text_ += " -3\n";
        return *this;
    }

    FrdText& block(const std::string& name, const std::vector<std::string>& components,
                   const std::vector<int>& nodes, const std::function<double(int node, int component)>& value,
                   int step = 1, int increment = 1, double time = 1, int mode = 0) {
        header(name, components, int(nodes.size()), step, increment, time, mode);
        for (const int node : nodes) {
            std::vector<double> values;
            for (std::size_t c = 0; c < components.size(); ++c)
                if (components[c] != "ALL") values.push_back(value(node, int(c)));
            row(node, values);
        }
        return endBlock();
    }

    FrdText& raw(const std::string& text) {
        text_ += text;
        return *this;
    }

    std::string end() const { return text_ + " 9999\n"; }

  private:
    static constexpr int kLine = 11; ///< element type of two nodes

    bool binary() const { return form_ == FrdForm::Binary; }
    bool isShort() const { return form_ == FrdForm::Short; }

    template <class... Numbers>
    void bytes(Numbers... numbers) {
        (text_.append(reinterpret_cast<const char*>(&numbers), sizeof numbers), ...);
    }

    [[gnu::format(printf, 2, 3)]] void add(const char* format, ...) {
        char line[256];
        std::va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(line, sizeof line, format, arguments);
        va_end(arguments);
        text_ += line;
    }

    FrdForm form_;
    int blocks_ = 0;
    std::string text_;
};

inline const std::vector<std::string> kDisplacement{"D1", "D2", "D3", "ALL"};
inline const std::vector<std::string> kStress{"SXX", "SYY", "SZZ", "SXY", "SYZ", "SZX"};
