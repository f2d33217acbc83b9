#include "tests/resultfile/Sample.h"
#include "tests/support/TemporaryFolder.h"

#include <charconv>
#include <cstdlib>

using namespace resultfile;

namespace {

/// Debian's interpreter, which is the one that has python3-h5py.
int runPython(const std::string& arguments) {
    return std::system(("PYTHONUTF8=1 /usr/bin/python3 " + arguments).c_str());
}

bool hasH5py() {
    return runPython("-c 'import h5py' 2>/dev/null") == 0;
}

#define SKIP_WITHOUT_H5PY()                                                                                  \
    if (!hasH5py()) GTEST_SKIP() << "/usr/bin/python3 has no h5py (Debian: python3-h5py)"

TEST(PythonExample, PrintsTheLargestValues) {
    SKIP_WITHOUT_H5PY();
    const TemporaryFolder folder;
    const auto file = folder / "a.lmop", output = folder / "output.txt";
    Sample sample;
    sample.steps = {"first", "둘째"};
    EXPECT_OK(sample.writeTo(file));
    const std::string script = std::string(VEXA_SOURCE_DIR) + "/docs/examples/read_result.py";
    ASSERT_EQ(runPython("'" + script + "' '" + file.string() + "' > '" + output.string() + "'"), 0);

    std::string expected;
    for (std::size_t c = 0; c < sample.cases.size(); ++c)
        for (std::size_t s = 0; s < sample.steps.size(); ++s) {
            const auto values = sample.values(c, s, sample.tables[0]);
            const auto worst = std::max_element(values.begin(), values.end());
            char value[32] = {}; // the shortest text that reads back as this float, as in Python
            std::to_chars(value, value + sizeof value, *worst);
            expected += sample.cases[c] + "\t" + sample.steps[s] + "\t" + (s ? "0.1" : "0.0") + "\t9\t" +
                        value + "\tat node\t" +
                        std::to_string(sample.nodes[static_cast<std::size_t>(worst - values.begin())]) + "\n";
        }
    EXPECT_EQ(bytesOf(output), expected);
}

/// What another program may do to a file through HDF5 itself, so that no checksum of HDF5's shows it.
struct Change {
    const char* name;
    const char*
        statement;       ///< Python: `f` is the file, `t` and `m` its first step and its mesh, `np` is numpy
    const char* message; ///< part of the sentence when the file is opened; empty: it opens
};

constexpr Change kChanges[] = {
    {"nothing", "pass", ""},
    {"another attribute", "f.attrs['note'] = np.bytes_('seen')", ""},
    {"another attribute of free length", "f.attrs['note'] = 'seen'", "its root group is damaged or changed"},
    {"newer", "f.attrs['version'] = np.int32(2)",
     "version 2, this program reads version 1; use a newer program"},
    {"older", "f.attrs['version'] = np.int32(0)", "version 0"},
    {"wide version", "f.attrs['version'] = np.int64(1)", "version is missing"},
    {"other format", "f.attrs['format'] = np.bytes_('mesh')", "not a result file"},
    {"no format", "del f.attrs['format']", "not a result file"},
    {"no producer", "del f.attrs['producer']", "texts is missing"},
    {"array of texts", "f.attrs['producer'] = np.array([b'a', b'b'])", "texts is missing"},
    {"no mesh", "del f['mesh']", "\"mesh\" is missing"},
    {"mesh is a dataset", "del f['mesh']; f['mesh'] = [1]", "\"mesh\" is missing"},
    {"no nodes", "del m['node_numbers']", "\"node_numbers\" is missing"},
    {"nodes of 64 bits", "del m['node_numbers']; m['node_numbers'] = np.arange(10)",
     "\"node_numbers\" is not one row"},
    {"corner counts differ", "del m['element_corner_counts']; m['element_corner_counts'] = np.zeros(2, 'i4')",
     "differ in number"},
    {"no checksum", "del m['element_corner_counts'].attrs['checksum']", "has no checksum"},
    {"corners changed", "m['element_corner_counts'][0] = 7", "its checksum differs"},
    {"no steps", "del f['cases/000001/steps']", "\"steps\" is missing"},
    {"gap in the steps", "del f['cases/000001/steps/000002']",
     "\"steps\" of case 000001 lacks its member 000002"},
    {"gap in the cases", "del f['cases/000001']", "\"cases\" lacks its member 000001"},
    {"same case name", "f['cases/000002'].attrs['name'] = f['cases/000001'].attrs['name']", "is there twice"},
    {"same step linked again", "f['cases/000001/steps/000004'] = t",
     "step 000001 of case 000001 is missing, damaged or changed"},
    {"text of free length", "t.attrs['name'] = 'free'", "is missing, damaged or changed"},
    {"name not UTF-8", "t.attrs['name'] = np.bytes_(b'\\xff')", "lacks its name"},
    {"very long name", "t.attrs['name'] = np.bytes_(b'x' * 60000)", "lacks its name"},
    {"value not a number", "t.attrs['value'] = np.float64('nan')", "lacks its name or value"},
    {"value as integer", "t.attrs['value'] = np.int64(3)", "lacks its name or value"},
    {"table not by number", "t.move('9', 'stress')", "is not named by an identifier"},
    {"table with leading zero", "t.move('9', '09')", "is not named by an identifier"},
    {"number too large", "t.move('9', '4294967296')", "is not named by an identifier"},
    {"negative number", "t.move('9', '-9')", "is not named by an identifier"},
    {"group for a table", "t.create_group('10')", "is missing, damaged or changed"},
    {"unknown location", "t['9'].attrs['location'] = np.int32(3)", "no location"},
    {"unknown list", "t['9'].attrs['items'] = np.bytes_('x')", "item list that is missing"},
    {"list elsewhere", "t['312101'].attrs['items'] = np.bytes_('surface')", "another location"},
    {"wrong count", "del t['9']; t['9'] = np.zeros(11, '<f4'); t['9'].attrs['location'] = np.int32(1)",
     "has 11 values where the mesh has 10"},
    {"two dimensions", "put(t, '9', data=np.zeros((10, 1), '<f4'))", "is missing, damaged or changed"},
    {"scalar", "put(t, '9', data=np.float32(1))", "is not one row"},
    {"no space", "put(t, '9', data=h5py.Empty('<f4'))", "is not one row"},
    {"double values", "put(t, '9', data=np.zeros(10))", "is not one row"},
    {"big-endian values", "put(t, '9', data=np.zeros(10, '>f4'))", "is not one row"},
    {"compressed", "put(t, '9', data=np.zeros(10, '<f4'), compression='gzip')",
     "is missing, damaged or changed"},
    {"chunked", "put(t, '9', data=np.zeros(10, '<f4'), chunks=(5,))", "is missing, damaged or changed"},
    {"values in another file", "put(t, '9', shape=(10,), dtype='<f4', external=[('a.lmop', 0, 40)])",
     "is missing, damaged or changed"},
    {"no values stored", "put(t, '9', shape=(10,), dtype='<f4')", "is not one row"},
    {"hostile count", "put(t, '9', shape=(2**60,), dtype='<f4')", "is not one row"},
    {"hostile mesh", "put(m, 'node_numbers', shape=(2**40,), dtype='<i4')", "is not one row"},
    {"hostile chunked count", "put(t, '9', shape=(2**50,), dtype='<f4', chunks=(4,))",
     "is missing, damaged or changed"},
    {"soft link", "t['10'] = h5py.SoftLink('9')", "is missing, damaged or changed"},
    {"link to another file", "t['10'] = h5py.ExternalLink('0.lmop', 'cases/000001/steps/000001/9')",
     "is missing, damaged or changed"},
    {"group that holds itself", "t['10'] = f['cases']", "is missing, damaged or changed"},
    {"one table linked often", "for i in range(1000, 1400): t[str(i)] = t['312101']",
     "more objects than fit"},
    {"one empty table linked often", "for i in range(1000, 9000): t[str(i)] = t['4294967295']",
     "more objects than fit"},
    {"list without name", "del f['items/000001'].attrs['name']", "item list 000001 lacks its name"},
    {"two lists of one name", "f['items/000002'].attrs['name'] = f['items/000001'].attrs['name']",
     "is there twice"},
    {"list changed", "f['items/000001'][0] = 77", "its checksum differs"},
    {"list with gap", "del f['items/000001']", "\"items\" lacks its member 000001"},
};

TEST(ChangedByAnotherProgram, IsRefusedWithASentence) {
    SKIP_WITHOUT_H5PY();
    const TemporaryFolder folder;
    EXPECT_OK(Sample().writeTo(folder / "a.lmop"));
    std::string script = "import h5py, numpy as np, shutil\n"
                         "def put(g, name, **how):\n"
                         "    attributes = dict(g[name].attrs)\n"
                         "    del g[name]\n"
                         "    d = g.create_dataset(name, **how)\n"
                         "    for key in attributes: d.attrs[key] = attributes[key]\n";
    for (std::size_t i = 0; i < std::size(kChanges); ++i)
        script += "shutil.copy('a.lmop', '" + std::to_string(i) + ".lmop')\n" + "with h5py.File('" +
                  std::to_string(i) +
                  ".lmop', 'r+', libver=('v108', 'v108')) as f:\n    t = f['cases/000001/steps/000001']; m = "
                  "f['mesh']\n    " +
                  kChanges[i].statement + "\n";
    script += "h5py.File('old.lmop', 'w')['x'] = 1\n";
    writeBytes(folder / "change.py", script);
    ASSERT_EQ(std::system(("cd '" + folder.path().string() + "' && /usr/bin/python3 change.py").c_str()), 0);
    for (std::size_t i = 0; i < std::size(kChanges); ++i) {
        SCOPED_TRACE(kChanges[i].name);
        const auto reader = Reader::open(folder / (std::to_string(i) + ".lmop"));
        const std::string message = reader ? "" : reader.error().message;
        EXPECT_EQ(message.empty(), *kChanges[i].message == '\0') << message;
        EXPECT_NE(message.find(kChanges[i].message), std::string::npos) << message;
    }
    const auto foreign = Reader::open(folder / "old.lmop");
    ASSERT_FALSE(foreign);
    EXPECT_NE(foreign.error().message.find("an HDF5 file, but not a result file"), std::string::npos);
}

} // namespace
