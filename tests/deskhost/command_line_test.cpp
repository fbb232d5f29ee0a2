#include "deskhost/console/command_line.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/deskhost/fake_addin.h"
#include "tests/support/system.h"

namespace deskhost {
namespace {

using automation::Failure;

struct CommandLineTest : testing::Test {
  CommandLineTest() { std::ofstream(file) << R"({"Name":"A.esp"})"; }
  ~CommandLineTest() override {
    std::filesystem::remove(file);
    std::filesystem::remove(trace);
  }

  int run(const std::vector<std::string>& args) {
    out.str("");
    err.str("");
    log.seen.clear();
    return run_command_line(args, {out, err, [this](const std::string& component) {
                                     if (component == "absent.so") throw Failure("no such component");
                                     return [this] { return std::make_shared<FakeAddin>(log); };
                                   }});
  }

  const std::string file = testing::TempDir() + "line_" + std::to_string(::getpid()) + ".json";
  const std::string trace = file + ".trace";
  FakeAddinLog log;
  std::ostringstream out, err;
};

TEST_F(CommandLineTest, WrongUseIsFoundBeforeTheSessionStarts) {
  struct Case {
    std::vector<std::string> args;
    const char* told;
  };
  const Case cases[]{
      {{}, "no action"},
      {{"--quiet"}, "no action"},
      {{"fly"}, "unknown action \"fly\""},
      {{"ui", "fly"}, "unknown action \"fly\""},
      {{"ui", "--quiet"}, "unknown option \"--quiet\""},
      {{"--loud", "ui"}, "unknown option \"--loud\""},
      {{"kb"}, "an argument of \"kb\" is missing"},
      {{"--kb", "/nonexistent/kb.db", "ui"}, "--kb: \"/nonexistent/kb.db\" can't be there"},
      {{"--kb", "a;b.db", "ui"}, "--kb: the name of a knowledge base"},
      {{"--language", "x", "ui"}, "--language"},
      {{"--fail-call", "0", "ui"}, "--fail-call: \"0\" is no number of a call"},
      {{"--fail-from", "1.5", "ui"}, "--fail-from: \"1.5\" is no"},
      {{"--fail-from", "18446744073709551616", "ui"}, "--fail-from: \"18446744073709551616\" is no"},
      {{"--addin", "a.so", "--no-addin", "ui"}, "--no-addin"},
      {{"--quiet", "--quiet", "ui"}, "--quiet comes twice"},
      {{"--quiet=1", "ui"}, "--quiet takes no value"},
      {{"--kb"}, "the value of --kb is missing"},
      {{"--trace", "/nonexistent/t", "ui"}, "--trace"},
      {{"open"}, "an argument of \"open\" is missing"},
      {{"open", "f.json", "modify", "T#1"}, "an argument of \"modify\" is missing"},
      {{"command", "1x"}, "\"1x\" is no number"},
      {{"command", ""}, "an argument of \"command\" is empty"},
      {{"language", "9999999999"}, "is no number"},
      {{"open", "f.json", "modify", "T#1", "A=1,B"}, "\"B\" is no assignment"},
      {{"open", "f.json", "modify", "T#1", "A=1,"}, "\"\" is no assignment"},
      {{"open", "f.json", "modify", "T#1", "=1"}, "is no assignment"},
      {{"toolbar", "Top=1.5"}, "Top refuses \"1.5\""},
      {{"toolbar", "Visible=yes"}, "Visible refuses"},
      {{"toolbar", "Width=1"}, "a toolbar has no \"Width\""},
      {{"ui", "preload", "f.json"}, "it isn't the first action"},
      {{"close"}, "no document is open"},
      {{"open", "f.json", "close", "save", "g.json"}, "save: no document is open"},
      {{"simulate"}, "no document is open"},
  };
  for (const auto& [args, told] : cases) {
    const std::string line = testing::PrintToString(args);
    EXPECT_EQ(run(args), 2) << line;
    EXPECT_NE(err.str().find(told), std::string::npos) << line << err.str();
    EXPECT_NE(err.str().find("\nhint: "), std::string::npos) << line;
    EXPECT_TRUE(log.seen.empty()) << line;
    EXPECT_EQ(out.str(), "") << line;
  }
}

TEST_F(CommandLineTest, TheExitStatusTellsHowTheSessionWent) {
  EXPECT_EQ(run({"--quiet", "ui"}), 0);
  EXPECT_EQ(out.str(), "ui 0 enabled=true\nui 1 enabled=true\nui 2 enabled=true\n");
  EXPECT_EQ(err.str(), "");

  EXPECT_EQ(run({"--addin", "absent.so", "ui"}), 3);
  EXPECT_NE(err.str().find("absent.so"), std::string::npos);

  EXPECT_EQ(run({"--no-addin", "kb", "/nonexistent/kb.db"}), 2);
  EXPECT_NE(err.str().find("kb: \"/nonexistent/kb.db\" can't be there"), std::string::npos);

  EXPECT_EQ(run({"preload", "missing.json", "ui"}), 2);
  EXPECT_EQ(log.seen, std::vector<std::string>{}) << "nothing was connected yet";
  EXPECT_EQ(run({"open", file, "open", "missing.json", "ui"}), 2);
  EXPECT_EQ(log.seen.back(), "released") << "the add-in is taken down in any case";
  EXPECT_EQ(out.str(), "");

  log.failing = {"OnCommand"};
  EXPECT_EQ(run({"--quiet", "import", "export"}), 1);
  EXPECT_EQ(err.str(), "failure: OnCommand: OnCommand\nfailure: OnCommand: OnCommand\n");
  EXPECT_EQ(run({"--no-addin", "import", "ui"}), 0);
  EXPECT_EQ(out.str().substr(0, 19), "ui 0 enabled=false\n");
  EXPECT_EQ(err.str(),
            "note: import: no add-in is connected, so nothing happened\n"
            "done: 2 actions, 0 host calls, 0 failures\n");

  log.leaves_something = true;
  EXPECT_EQ(run({"--quiet", "disconnect"}), 0);
  EXPECT_EQ(err.str(), "left behind: 1 reference (Configuration), 1 binding (Application)\n");
  log.kept.reset();
  log.kept_binding.release();
}

TEST_F(CommandLineTest, TheTraceFileHoldsEveryCallOfTheSession) {
  EXPECT_EQ(run({"--trace", trace, "--fail-call", "2", "ui"}), 1) << "the connection failed";
  std::ifstream stream(trace);
  std::string line;
  std::getline(stream, line);
  EXPECT_EQ(line.substr(0, 46), R"({"n":1,"op":"get","on":"AddIn","member":"Cooki)");
  std::getline(stream, line);
  EXPECT_NE(line.find(R"("error":"The host refuses the call"})"), std::string::npos);
}

TEST_F(CommandLineTest, AnOutputNeverTakesTheFileOfAnotherArgument) {
  const std::string link = file + ".link";
  std::filesystem::create_hard_link(file, link);
  for (const std::vector<std::string>& args :
       {std::vector<std::string>{"--trace", file, "open", file},
        {"--trace", link, "preload", file},
        {"open", file, "dump", link},
        {"template", file, "draw", testing::TempDir() + "./" + link.substr(testing::TempDir().size())},
        {"open", file, "save", trace, "dump", trace},
        {"--trace", trace, "dump", trace},
        {"--trace", file, "kb", file}}) {
    EXPECT_EQ(run(args), 2) << testing::PrintToString(args);
    EXPECT_NE(err.str().find("would be lost: "), std::string::npos) << err.str();
    EXPECT_TRUE(log.seen.empty());
  }
  std::filesystem::remove(link);
  EXPECT_EQ(std::filesystem::file_size(file), 16U);
  EXPECT_FALSE(std::filesystem::exists(trace));
  if (testing_support::on_windows) return;  // whose devices are no files
  EXPECT_EQ(run({"--trace", "/dev/null", "dump", "/dev/null"}), 0);
}

TEST_F(CommandLineTest, DevicesAreNoDocumentsAndCanBeFull) {
  if (testing_support::on_windows) GTEST_SKIP() << "its devices are no files";
  EXPECT_EQ(run({"open", "/dev/zero"}), 2);
  EXPECT_NE(err.str().find("/dev/zero: can't be read: it is no regular file"), std::string::npos);
  EXPECT_EQ(run({"--trace", "/dev/full", "ui"}), 2);
  EXPECT_NE(err.str().find("--trace: \"/dev/full\" couldn't be written"), std::string::npos) << err.str();
  std::ofstream full("/dev/full");
  EXPECT_EQ(run_command_line({"--no-addin", "open", file, "show", "save", trace}, {full, err, {}}), 2);
  EXPECT_NE(err.str().find("standard output couldn't be written"), std::string::npos) << err.str();
  EXPECT_TRUE(std::filesystem::exists(trace)) << "the session goes on";
}

TEST_F(CommandLineTest, RefusesDocumentsThatItMustNotReplaceOrCannotRead) {
  namespace fs = std::filesystem;
  std::ofstream(trace) << "old";
  fs::permissions(trace, fs::perms::owner_read);
  EXPECT_EQ(run({"open", file, "save", trace}), 2);
  EXPECT_NE(err.str().find(": can't be written: Permission denied"), std::string::npos) << err.str();
  EXPECT_EQ(fs::file_size(trace), 3U);
  fs::permissions(trace, fs::perms::owner_all);
  std::ofstream(file) << "{\n\"Name\":" << std::string(1'000, '[');
  EXPECT_EQ(run({"open", file}), 2);
  EXPECT_NE(err.str().find(", line 2, column 1007: more than 1000 levels are nested"), std::string::npos)
      << err.str();
}

TEST_F(CommandLineTest, HelpListsEveryAction) {
  EXPECT_EQ(run({"--help"}), 0);
  for (const char* action :
       {"  preload FILE ", "  modify TOOL NAME=VALUE[,...] ", ", release ", "--fail-from"}) {
    EXPECT_NE(out.str().find(action), std::string::npos) << action;
  }
}

}  // namespace
}  // namespace deskhost
