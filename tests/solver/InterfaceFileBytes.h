#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

/// Interface files for tests, put together byte by byte from the format's description. Nothing here is shared
/// with the reader under test.
namespace interfacefile {

using Tensor = std::array<double, 6>;

/// A number that announces how much follows.
struct Count {
    int value;
};

class Bytes {
  public:
    /// One framed record of integers, counts, reals and raw text.
    template <class... Values>
    void record(const Values&... values) {
        std::string payload;
        std::vector<std::size_t> countsInside;
        (put(payload, countsInside, values), ...);
        frame(payload.size());
        for (const std::size_t offset : countsInside)
            counts.push_back(bytes.size() + offset);
        bytes += payload;
        frame(payload.size());
    }

    std::string bytes;
    std::vector<std::size_t> counts; ///< where each 32-bit count stands, those of the frames too

    static std::string littleEndian(std::uint64_t bits, int byteCount) {
        std::string text;
        for (int i = 0; i < byteCount; ++i)
            text += static_cast<char>(bits >> 8 * i & 0xFF);
        return text;
    }

  private:
    void frame(std::size_t length) {
        counts.push_back(bytes.size());
        bytes += littleEndian(length, 4);
    }
    static void put(std::string& to, std::vector<std::size_t>&, int value) {
        to += littleEndian(static_cast<std::uint32_t>(value), 4);
    }
    static void put(std::string& to, std::vector<std::size_t>& countsInside, Count count) {
        countsInside.push_back(to.size());
        to += littleEndian(static_cast<std::uint32_t>(count.value), 4);
    }
    static void put(std::string& to, std::vector<std::size_t>&, double value) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        to += littleEndian(bits, 8);
    }
    static void put(std::string& to, std::vector<std::size_t>&, const std::string& text) { to += text; }
    template <class T>
    static void put(std::string& to, std::vector<std::size_t>& countsInside, const std::vector<T>& values) {
        for (const T& value : values)
            put(to, countsInside, value);
    }
    template <class T, std::size_t n>
    static void put(std::string& to, std::vector<std::size_t>& countsInside, const std::array<T, n>& values) {
        for (const T& value : values)
            put(to, countsInside, value);
    }
};

struct Material {
    double modulus = 2.1e11;
    double ultimate = 500e6;
    double yield = 300e6;
    int curveType = 1;
    std::array<double, 2> basquin{1000e6, -0.1};
    std::vector<std::array<double, 2>> points{};
};

struct StrainLife {
    double modulus = 2.1e11;
    double poisson = 0.3;
    double hardeningExponent = 0.15;
    double hardeningCoefficient = 1200e6;
    double strength = 900e6;
    double b = -0.09;
    double ductility = 0.5;
    double c = -0.6;
};

struct Function {
    int number = 1;
    std::vector<std::array<double, 2>> points{};
};

struct Load {
    int caseKey = 1;
    double factor = 1;
    int function = 1;
};

struct Node {
    int number = 1;
    std::vector<int> materials{1};
    std::vector<Tensor> tensors{}; ///< one for each load or step
    std::vector<Tensor> strains{}; ///< beside stresses in `tensors`; where there are none, those again
};

/// A file's content. As it stands: two nodes, one load entry that goes 0, 1, -1, 0, one Basquin material.
struct Content {
    std::string name = "model_Fatigue";
    int programType = 1;
    int headerFirst = 1;
    int headerMaterials = -1; ///< negative: as many as there are
    int type = 0;
    int stressOption = 1;
    int strainOption = 1;
    int planeMethod = 0;
    std::array<int, 2> quick{0, 0};
    std::array<int, 9> flags{1, 0, 0, 0, 0, 0, 1, 1, 1};
    double infiniteLife = 1e12;
    std::vector<Material> materials{Material{}};
    std::vector<StrainLife> strainLife{StrainLife{}}; ///< the last one serves all further materials
    int blocks = 1;
    std::vector<Function> functions{{1, {{0, 0}, {1, 1}, {2, -1}, {3, 0}}}};
    std::vector<double> axis{0, 1, 2, 3};
    std::vector<Load> loads{Load{}};
    int steps = 0; ///< step-based types
    std::vector<Node> nodes{{11, {1}, {{100e6, 0, 0, 0, 0, 0}}}, {25, {1}, {{50e6, 20e6, 0, 10e6, 5e6, 0}}}};
};

inline std::string nameField(const std::string& name) {
    std::string field = (name + '\0').substr(0, 1024);
    field.resize(1024, ' ');
    return field;
}

inline Bytes build(const Content& c) {
    const bool cases = c.type == 0 || c.type == 1;
    const auto size = [](const auto& list) { return Count{static_cast<int>(list.size())}; };
    Bytes out;
    out.record(nameField(c.name));
    out.record(c.programType);
    out.record(c.headerFirst, size(c.nodes),
               c.headerMaterials < 0 ? size(c.materials) : Count{c.headerMaterials}, c.type);
    out.record(7);
    out.record(c.stressOption);
    out.record(c.strainOption);
    out.record(c.planeMethod);
    out.record(c.quick);
    out.record(c.flags);
    out.record(c.infiniteLife);
    for (std::size_t i = 0; i < c.materials.size(); ++i) {
        const Material& m = c.materials[i];
        if (c.type == 1 || c.type == 3 || c.type == 4) {
            const StrainLife& s = c.strainLife[std::min(i, c.strainLife.size() - 1)];
            out.record(s.modulus, s.poisson, s.hardeningExponent, s.hardeningCoefficient, s.strength, s.b,
                       s.ductility, s.c);
            continue;
        }
        out.record(m.modulus, m.ultimate, m.yield);
        out.record(m.curveType);
        if (m.curveType == 1) {
            out.record(m.basquin);
        } else {
            out.record(size(m.points));
            for (const auto& point : m.points)
                out.record(point);
        }
    }
    if (cases) {
        int points = 0;
        for (const Function& f : c.functions)
            points += static_cast<int>(f.points.size());
        out.record(size(c.loads), size(c.functions), c.blocks, Count{points});
        for (const Function& f : c.functions) {
            out.record(f.number, size(f.points));
            for (const auto& point : f.points)
                out.record(point);
        }
        out.record(size(c.axis));
        for (const double time : c.axis)
            out.record(time);
        for (const Load& load : c.loads)
            out.record(load.caseKey, load.factor, load.function);
    } else {
        out.record(0, 0, c.blocks, 0);
        out.record(Count{c.steps});
        for (int i = 0; i < c.steps; ++i)
            out.record(static_cast<double>(i));
    }
    for (const Node& node : c.nodes) {
        out.record(node.number, Count{cases ? static_cast<int>(c.loads.size()) : c.steps}, node.number,
                   size(node.materials));
        if (!node.materials.empty()) out.record(node.materials);
        for (std::size_t i = 0; i < node.tensors.size(); ++i) {
            if (cases)
                out.record(c.loads[i].caseKey, node.tensors[i]);
            else if (c.type == 4)
                out.record(node.tensors[i], node.strains.empty() ? node.tensors[i] : node.strains[i]);
            else
                out.record(node.tensors[i]);
        }
    }
    return out;
}

/// A file of steps: each node's uniaxial stresses, in xx.
inline Content stepsOf(const std::vector<std::vector<double>>& histories) {
    Content c;
    c.type = 2;
    c.steps = static_cast<int>(histories.front().size());
    c.nodes.clear();
    for (std::size_t i = 0; i < histories.size(); ++i) {
        Node node{static_cast<int>(i) + 1, {1}, {}};
        for (const double stress : histories[i])
            node.tensors.push_back({stress, 0, 0, 0, 0, 0});
        c.nodes.push_back(node);
    }
    return c;
}

} // namespace interfacefile
