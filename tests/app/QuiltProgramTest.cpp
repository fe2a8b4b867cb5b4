// QuiltProgramTest.cpp - the program's exit statuses, error reports and output destinations
#include "QuiltProgram.h"

#include "host/Utf8Text.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

namespace {

namespace fs = std::filesystem;

/// A scratch folder with a small data set, removed after each test.
class ProgramFixture : public ::testing::Test {
protected:
  void SetUp() override {
    _folder = fs::temp_directory_path() / ("quilt-program-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                                           "-" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::create_directories(_folder);
    Write("small.csv", "region,gender\n1,1\n2,2\n1,2\n");
  }
  void TearDown() override { fs::remove_all(_folder); }

  std::string Write(const std::string& name, const std::string& text) {
    const fs::path path = _folder / name;
    std::ofstream(path, std::ios::binary) << text;
    return path.string();
  }

  int Run(ProgramOptions options) {
    if (options.dataPath.empty()) options.dataPath = (_folder / "small.csv").string();
    _output.str("");
    _errors.str("");
    QuiltProgram program(std::move(options), _errors);
    return program.Run(_output);
  }

  fs::path _folder;
  std::ostringstream _output;
  std::ostringstream _errors;
};

// The bad-input tour: each row sets up the files of one run (every run writes JSON to an
// output file that already holds earlier results) and states the exit status and a piece
// of the message that must name what is wrong and where. Status 2 leaves the output file
// as it was and prints nothing; status 1 (a command failed) and 0 replace it with a whole
// document, which must parse. Texts and counts were worked out by hand from the rows.
struct TourCase {
  const char* name;
  std::function<void(class BadInputTour&, ProgramOptions&)> setUp;
  int status;
  std::string message;  // in the errors (status 2), else in the output document as compact JSON
};

void PrintTo(const TourCase& row, std::ostream* out) { *out << row.name; }

class BadInputTour : public ProgramFixture, public ::testing::WithParamInterface<TourCase> {
public:
  std::string Path(const std::string& name) const { return (_folder / name).string(); }
  using ProgramFixture::Write;
};

// Data of `count` lines after a header "id,x", line i holding `field(i)`.
std::string Rows(int count, const std::function<std::string(int)>& field) {
  std::string csv = "id,x\n";
  for (int i = 0; i < count; ++i) csv += std::to_string(i + 1) + "," + field(i) + "\n";
  return csv;
}

// Writes `text` gzip-compressed to `path`, keeping only its first `keep` bytes when given
// (a download cut short).
std::string WriteGzip(const std::string& path, const std::string& text, std::size_t keep = std::string::npos) {
  gzFile file = gzopen(path.c_str(), "wb");
  gzwrite(file, text.data(), static_cast<unsigned>(text.size()));
  gzclose(file);
  if (keep != std::string::npos) fs::resize_file(path, keep);
  return path;
}

// Runs with standard input read from `path` (file descriptor 0 swapped for the run).
class StandardInputFrom {
public:
  explicit StandardInputFrom(const char* path) : _saved(::dup(0)) {
    const int descriptor = ::open(path, O_RDONLY);
    ::dup2(descriptor, 0);
    ::close(descriptor);
  }
  ~StandardInputFrom() {
    ::dup2(_saved, 0);
    ::close(_saved);
  }

private:
  int _saved;
};

const TourCase kTour[] = {
    // Files that cannot be read as what they are given as.
    {"MissingDataFile", [](BadInputTour& t, ProgramOptions& o) { o.dataPath = t.Path("missing.csv"); }, 2,
     "missing.csv: cannot open the data file (No such file or directory)"},
    {"UnreadableDataFile", [](BadInputTour& t, ProgramOptions& o) { o.dataPath = t.Path("small.csv/x.csv"); },
     2, "small.csv/x.csv: cannot open the data file (Not a directory)"},
    {"DirectoryAsDataFile", [](BadInputTour& t, ProgramOptions& o) { o.dataPath = t.Path(""); }, 2,
     "is a directory, not a data file"},
    {"DirectoryAsDictionary", [](BadInputTour& t, ProgramOptions& o) { o.dictionaryPath = t.Path(""); }, 2,
     "is a directory, not a dictionary"},
    {"DirectoryAsCommandFile",
     [](BadInputTour& t, ProgramOptions& o) { o.commandFiles = {t.Path("")}, o.commandTexts = {}; }, 2,
     "is a directory, not a command file"},
    {"DevZeroAsDataFile", [](BadInputTour&, ProgramOptions& o) { o.dataPath = "/dev/zero"; }, 2,
     "/dev/zero:1: byte 0x00 at byte 1 of the file: the data file is not text"},
    {"DevZeroAsDictionary", [](BadInputTour&, ProgramOptions& o) { o.dictionaryPath = "/dev/zero"; }, 2,
     "/dev/zero:1: byte 0x00 at byte 1 of the file: the dictionary is not text"},
    {"DevZeroAsCommandFile", [](BadInputTour&, ProgramOptions& o) { o.commandFiles = {"/dev/zero"}, o.commandTexts = {}; },
     2, "/dev/zero:1: byte 0x00 at byte 1 of the file: the command file is not text"},
    {"BinaryGarbageAsCommandFile",
     [](BadInputTour& t, ProgramOptions& o) {
       const char garbage[] = "QUILT /TABLE \x89PNG\r\n\x1A\n\0\0\0\rIHDR";
       o.commandFiles = {t.Write("garbage.qlt", std::string(garbage, sizeof garbage - 1))};
       o.commandTexts = {};
     },
     2, "garbage.qlt:3: byte 0x00 at byte 22 of the file: the command file is not text"},
    // Empty inputs.
    {"EmptyCommandFile",
     [](BadInputTour& t, ProgramOptions& o) { o.commandFiles = {t.Write("empty.qlt", "")}, o.commandTexts = {}; },
     2, "empty.qlt: no command to run (it is empty)"},
    {"EmptyStandardInput", [](BadInputTour&, ProgramOptions& o) { o.commandFiles = {"-"}, o.commandTexts = {}; },
     2, "<stdin>: no command to run (it is empty)"},
    {"HeaderOnly", [](BadInputTour& t, ProgramOptions& o) { o.dataPath = t.Write("header.csv", "region,gender\n"); },
     1, "There are no cases in the active data set"},
    // A data file the loader refuses (its other refusals are cases of DatasetLoaderCsvTest).
    {"RaggedRows", [](BadInputTour& t, ProgramOptions& o) { o.dataPath = t.Write("bad.csv", "region,gender\n1,1\n2\n"); },
     2, "bad.csv:3: 1 field, but the header has 2 columns"},
    // Sums no double holds.
    {"SumBeyondTheRange",
     [](BadInputTour& t, ProgramOptions& o) {
       o.dataPath = t.Write("huge.csv", Rows(3, [](int i) { return i < 2 ? "1e308" : "0.5"; }));
       o.commandTexts = {"QUILT /TABLE x [S] [SUM]."};
     },
     0, "Some statistics of x in table 1 are beyond the range of numbers"},
    // Sizes: a 10 MB field, a category of 100,000 values, a 1 MB command.
    {"TenMegabyteField", [](BadInputTour& t, ProgramOptions& o) { o.dataPath = t.Write("big.csv", Rows(2, [](int i) { return i == 1 ? std::string(10 << 20, 'a') : "b"; })); },
     2, "big.csv:3: column 'x': a text of 10485760 bytes is longer than the limit of 32767 bytes"},
    {"HundredThousandValueCategory",
     [](BadInputTour& t, ProgramOptions& o) {
       o.dataPath = t.Write("ids.csv", Rows(100000, [](int i) { return "v" + std::to_string(i); }));
       o.commandTexts = {"QUILT /TABLE x."};
     },
     1, "The variable x has more than 60000 distinct values"},
    {"OneMegabyteCommand",
     [](BadInputTour&, ProgramOptions& o) {
       std::string command = "QUILT /TABLE region";
       while (command.size() < (1 << 20)) command += " + gender";
       o.commandTexts = {command + "."};
     },
     1, "-e:1:9012: Table 1: the table expression stacks more than 1000 terms with +"},
    {"DeepParentheses",
     [](BadInputTour&, ProgramOptions& o) { o.commandTexts = {"QUILT /TABLE " + std::string(50000, '(') + "region" + std::string(50000, ')') + "."}; },
     1, R"(-e:1:114: Subcommand TABLE: parentheses and brackets are nested more than 100 levels deep at \"(\".)"},
    {"Latin1Command", [](BadInputTour&, ProgramOptions& o) { o.commandTexts = {"QUILT /TABLE caf\xE9."}; }, 1,
     "-e:1:17: byte 0xE9 is not UTF-8 (save the command file as UTF-8)"},
    {"DictionaryNumberOutOfRange",
     [](BadInputTour& t, ProgramOptions& o) { o.dictionaryPath = t.Write("bad.dict.json", R"({"variables": [{"name": "region", "values": {"1": 2e555}}]})"); },
     2, "bad.dict.json: variables[0].values['1']: '2e555' is out of the range of numbers (line 1, column 51)"},
    // Output that cannot be written: under a file, and in /proc (root may write anywhere else).
    {"OutputUnderAFile", [](BadInputTour& t, ProgramOptions& o) { o.outputPath = t.Path("small.csv/out.json"); }, 2,
     "small.csv/out.json: cannot write the output file (Not a directory)"},
    {"OutputInProc", [](BadInputTour&, ProgramOptions& o) { o.outputPath = "/proc/quilt/out.json"; }, 2,
     "/proc/quilt/out.json: cannot write the output file (No such file or directory)"},
    // Weights: a case whose weight is missing, zero or negative is left out of every table;
    // region 1 holds 2 + 1.5 = 3.5, shown rounded as 4, and region 2 (weights 0 and missing) none.
    {"NegativeZeroAndMissingWeights",
     [](BadInputTour& t, ProgramOptions& o) {
       o.dataPath = t.Write("weighted.csv", "region,w\n1,2\n1,-1\n2,0\n2,\n1,1.5\n");
       o.weightVariable = "w";
     },
     0, R"("number":3.5)"},
    // Read as each command runs: a declared number column holding text is found by the pass,
    // and a gzip file cut short is found at its end; either way no table is delivered.
    {"BadNumberFoundByThePass",
     [](BadInputTour& t, ProgramOptions& o) {
       o.dataPath = t.Write("declared.csv", "region,gender\n1,1\n2,x\n");
       o.dictionaryPath = t.Write("declared.dict.json", R"({"variables": [
         {"name": "region", "type": "numeric", "format": "F1.0", "measure": "nominal"},
         {"name": "gender", "type": "numeric", "format": "F1.0", "measure": "nominal"}]})");
       o.commandTexts = {"QUILT /TABLE region BY gender."};
     },
     2, "declared.csv:3: column 'gender': 'x' is not a number"},
    {"TruncatedGzip",
     [](BadInputTour& t, ProgramOptions& o) {
       o.dataPath = WriteGzip(t.Path("cut.csv.gz"), Rows(20000, [](int i) { return std::to_string(i % 7); }), 2000);
     },
     2, "cut.csv.gz: the gzip data ends early: the file is truncated"},
    {"NonNumericWeight",
     [](BadInputTour& t, ProgramOptions& o) {
       o.dataPath = t.Write("weighted.csv", "region,w\n1,2\n1,heavy\n");
       o.weightVariable = "w";
     },
     2, "--weight: 'w' is a string variable; a weight must be numeric"},
};

TEST_P(BadInputTour, ExitStatusMessageAndOutputFile) {
  const TourCase& row = GetParam();
  const std::string earlier = "earlier results\n";
  ProgramOptions options;
  options.commandTexts = {"QUILT /TABLE region."};
  options.format = "json";
  options.outputPath = Write("out.json", earlier);
  row.setUp(*this, options);
  const std::string outputPath = options.outputPath;
  int status = 0;
  {
    StandardInputFrom input("/dev/null");
    status = Run(options);
  }
  EXPECT_EQ(status, row.status) << _errors.str();
  EXPECT_EQ(_output.str(), "") << "the document goes to the output file only";
  std::ifstream stream(outputPath);
  std::stringstream written;
  written << stream.rdbuf();
  if (row.status == kExitBadInvocation) {
    EXPECT_NE(_errors.str().find(row.message), std::string::npos) << _errors.str().substr(0, 300);
    if (outputPath == Path("out.json")) {
      EXPECT_EQ(written.str(), earlier) << "an existing output file is kept";
    }
    return;
  }
  ASSERT_TRUE(nlohmann::json::accept(written.str())) << "a whole document, not a part of one";
  const std::string compact = nlohmann::json::parse(written.str()).dump();
  EXPECT_NE(compact.find(row.message), std::string::npos) << compact.substr(0, 2000);
}

INSTANTIATE_TEST_SUITE_P(QuiltProgram, BadInputTour, ::testing::ValuesIn(kTour),
                         [](const ::testing::TestParamInfo<TourCase>& info) { return std::string(info.param.name); });

// The same tables from the plain file, from standard input (read by two commands, so the
// second replays what the first read) and from a gzip file.
TEST_F(ProgramFixture, StandardInputAndGzipGiveTheTablesOfThePlainFile) {
  std::string csv = "region,gender\n";
  for (int i = 0; i < 30000; ++i) csv += std::to_string(i % 5 + 1) + "," + std::to_string(i % 3 + 1) + "\n";
  const std::string plain = Write("many.csv", csv);
  const std::string packed = WriteGzip((_folder / "many.csv.gz").string(), csv);
  ProgramOptions options;
  options.commandTexts = {"QUILT /TABLE region BY gender.", "QUILT /TABLE gender."};
  options.format = "json";
  options.dataPath = plain;
  ASSERT_EQ(Run(options), kExitSuccess) << _errors.str();
  const std::string expected = _output.str();
  // 30000 cases: each gender holds every third (10000), each region and gender pair every
  // fifteenth (2000, as i mod 5 and i mod 3 run through every pair once in 15).
  EXPECT_NE(expected.find(R"("text": "10000")"), std::string::npos);
  EXPECT_NE(expected.find(R"("text": "2000")"), std::string::npos);
  options.dataPath = "-";
  {
    StandardInputFrom input(plain.c_str());
    ASSERT_EQ(Run(options), kExitSuccess) << _errors.str();
  }
  EXPECT_EQ(_output.str(), expected);
  options.dataPath = packed;
  ASSERT_EQ(Run(options), kExitSuccess) << _errors.str();
  EXPECT_EQ(_output.str(), expected);
}

// The data pass reads ahead on a second thread or not: the same document either way, over
// many blocks of cases, split groups, weights and medians.
TEST_F(ProgramFixture, OneThreadAndTwoGiveTheSameDocument) {
  std::string csv = "wave,region,score,w\n";
  for (int i = 0; i < 40000; ++i) {
    csv += std::to_string(i / 15000 + 1) + "," + std::to_string(i % 4 + 1) + "," + std::to_string(i % 997) + "." +
           std::to_string(i % 10) + "," + std::to_string(1 + i % 3) + "\n";
  }
  ProgramOptions options;
  options.dataPath = Write("waves.csv", csv);
  options.weightVariable = "w";
  options.splitVariables = {"wave"};
  options.commandTexts = {"QUILT /TABLE region BY score [COUNT MEAN MEDIAN UMEDIAN PTILE 90]."};
  options.format = "json";
  options.threads = 1;
  ASSERT_EQ(Run(options), kExitSuccess) << _errors.str();
  const std::string oneThread = _output.str();
  options.threads = 2;
  ASSERT_EQ(Run(options), kExitSuccess) << _errors.str();
  EXPECT_EQ(_output.str(), oneThread);
}

// The control package's sentence on a page narrower than its 450-point column: the column is
// held to the page and the sentence wraps, read from the left. A 0/1 variable against two
// groups gives one sentence (group 1 against group 2).
TEST_F(ProgramFixture, ASentenceOnANarrowPageWrapsWithinItFromTheLeft) {
  ProgramOptions options;
  options.dataPath = Write("used.csv", "used,grp\n0,1\n1,1\n1,1\n0,2\n0,2\n1,2\n");
  options.controlPackage = true;
  options.width = 50;
  options.commandTexts = {"QUILT /TABLE used BY grp [COLPCT.COUNT] /COMPARETEST TYPE=PROP."};
  ASSERT_EQ(Run(options), kExitSuccess) << _errors.str();
  std::istringstream lines(_output.str());
  std::string line;
  std::string sentenceStart;
  while (std::getline(lines, line)) {
    EXPECT_LE(Utf8Text::CharacterCount(line), 50u) << line;
    if (line.find("There is") != std::string::npos) sentenceStart = line;
  }
  EXPECT_EQ(sentenceStart.substr(0, std::string("│ There is").size()), "│ There is") << _output.str();
}

}  // namespace
