#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

/// Reads an interface file by its description alone, and says what its text mirror must look like.
class InterfaceReader {
  public:
    using Value = std::variant<std::int32_t, double, std::string>;
    using Record = std::vector<Value>;

    explicit InterfaceReader(const std::string& bytes)
        : bytes_(bytes) {
        readAll();
    }

    std::vector<Record> records;    ///< every record's payload, typed
    std::vector<std::string> lines; ///< the mirror's lines

  private:
    void readAll() {
        lines.push_back("* FileName");
        text();
        say("* Program Type ( vorta: 1, Nastran: 2 )", "i");
        take("iiii");
        const Record header = records.back();
        lines.back() = "* FATIGUE(" + print(header[0]) + ") " + print(header[1]) + " " + print(header[2]) +
                       " " + print(header[3]);
        say("* Analysis Set Data", "i");
        say("* Stress Option", "i");
        say("* Strain Option", "i");
        say("* Critical Plane Method Option", "i");
        say("* Quick Rainflow Counting Option", "ii");
        say("* Output Request ( None, Goodman, Gerber, Soderberg, Morrow, SWT, Damage, Fatigue Life Cycle)",
            "iiiiiiiii");
        say("* Infinite Life", "d");
        const int type = integer(header, 3);
        lines.push_back("* Material Data");
        for (int i = 0; i < integer(header, 2); ++i)
            material(type);
        if (type <= 1)
            caseLoads();
        else
            stepLoads(type);
        lines.push_back("* Node Data");
        for (int i = 0; i < integer(header, 1); ++i)
            node(type);
        if (at_ != bytes_.size()) throw std::runtime_error("bytes behind the last record");
    }
    void material(int type) {
        if (type != 0 && type != 2) return take("dddddddd");
        take("ddd");
        take("i");
        if (integer(records.back(), 0) == 1) return take("dd");
        take("i");
        for (int n = integer(records.back(), 0); n > 0; --n)
            take("dd");
    }
    void caseLoads() {
        say("* Fatigue Load Size, Fatigue Curve Size, Fatigue Curve Field Size, Number of Load Cycles",
            "iiii");
        const Record sizes = records.back();
        lines.push_back("* Fatigue Load Function");
        int points = 0;
        for (int f = integer(sizes, 1); f > 0; --f) {
            take("ii");
            const int count = integer(records.back(), 1);
            points += count;
            for (int n = count; n > 0; --n)
                take("dd");
        }
        if (points != integer(sizes, 3))
            throw std::runtime_error("points of the load functions do not add up");
        take("i");
        for (int n = integer(records.back(), 0); n > 0; --n)
            take("d");
        lines.push_back("* Fatigue Load");
        for (int n = integer(sizes, 0); n > 0; --n)
            take("idi");
    }
    void stepLoads(int type) {
        if (type != 4) lines.push_back("* Fatigue Load");
        take("iiii");
        take("i");
        for (int n = integer(records.back(), 0); n > 0; --n)
            take("d");
    }
    void node(int type) {
        take("iiii");
        const Record head = records.back();
        if (head[0] != head[2]) throw std::runtime_error("the node's number is not written twice");
        if (const int m = integer(head, 3)) take(std::string(static_cast<std::size_t>(m), 'i'));
        for (int k = integer(head, 1); k > 0; --k)
            take(type <= 1 ? "idddddd" : type == 4 ? "dddddddddddd" : "dddddd");
    }

    static int integer(const Record& record, std::size_t i) { return std::get<std::int32_t>(record.at(i)); }
    void say(const char* comment, const std::string& types) {
        lines.push_back(comment);
        take(types);
    }
    void take(const std::string& types) {
        const std::string payload = frame();
        Record record;
        std::size_t p = 0;
        for (const char type : types) {
            if (type == 'i')
                record.push_back(static_cast<std::int32_t>(little(payload, p, 4)));
            else
                record.push_back(std::bit_cast<double>(little(payload, p, 8)));
            p += type == 'i' ? 4 : 8;
        }
        if (p != payload.size())
            throw std::runtime_error("record " + std::to_string(records.size()) + " has a wrong length");
        std::string line = std::to_string(payload.size());
        for (const Value& value : record)
            line += " " + print(value);
        lines.push_back(line + " " + std::to_string(payload.size()));
        records.push_back(record);
    }
    void text() {
        const std::string payload = frame();
        if (payload.size() != 1024) throw std::runtime_error("the name field is not 1024 bytes");
        records.push_back({payload});
        lines.push_back("1024 " + payload.substr(0, payload.find('\0')) + " 1024");
    }
    std::string frame() {
        const auto length = static_cast<std::size_t>(little(bytes_, at_, 4));
        std::string payload = bytes_.substr(at_ + 4, length);
        if (little(bytes_, at_ + 4 + length, 4) != length) throw std::runtime_error("a frame does not close");
        at_ += length + 8;
        return payload;
    }
    static std::uint64_t little(const std::string& bytes, std::size_t at, std::size_t count) {
        if (at + count > bytes.size()) throw std::runtime_error("the file ends early");
        std::uint64_t value = 0;
        for (std::size_t i = count; i > 0; --i)
            value = value << 8 | static_cast<unsigned char>(bytes[at + i - 1]);
        return value;
    }
    static std::string print(const Value& value) {
        if (const auto* integer = std::get_if<std::int32_t>(&value)) return std::to_string(*integer);
        std::array<char, 32> buffer{};
        std::snprintf(buffer.data(), buffer.size(), "%g", std::get<double>(value));
        return buffer.data();
    }

    const std::string& bytes_;
    std::size_t at_ = 0;
};
