#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>

#include "tests/boundary/scratch_folder.h"
#include "tools/tavlynd/keys.h"
#include "tools/tavlynd/settings_file.h"

namespace tavlyn::agent {
namespace {

const std::string kUrl = "[broker]\nurl = \"mqtts://broker.example\"\n";

std::string MistakesIn(const std::string& text) {
  std::string lines;
  for (const Mistake& one : ParseSettings(text).mistakes) lines += MistakeLine("f", one) + "\n";
  return lines;
}

TEST(AgentSettings, TheExampleIsRight) {
  EXPECT_EQ(MistakesIn(ExampleFile()), "");
  // With every key set, too, though not all of them together.
  std::string all = ExampleFile();
  for (std::size_t at = 0; (at = all.find("\n#", at)) != std::string::npos; ++at) {
    if (all[at + 2] != ' ') all.erase(at + 1, 1);
  }
  const std::vector<Mistake> mistakes = ParseSettings(all).mistakes;
  ASSERT_EQ(mistakes.size(), 2U);
  EXPECT_EQ(mistakes[0].text, "password is set too; remove one of them");
  EXPECT_EQ(mistakes[1].text, "site-key must be a text of 32 characters or more");
}

TEST(AgentSettings, EveryMistakeIsToldWithItsLine) {
  struct Case {
    const char* text;
    const char* told;
  };
  const Case kCases[] = {
      {"[devices]\ninterval = 5\n", "f:4: interval must be a whole number from 20 to 10000\n"},
      {"[devices]\ninterval = \"5\"\n", "f:4: interval must be a whole number from 20 to 10000\n"},
      {"[devices]\nintervall = 50\n", "f:4: [devices] has no key intervall; did you mean interval?\n"},
      {"[device]\ninterval = 50\n", "f:3: there is no section [device]; did you mean devices?\n"},
      {"[devices]\nusb = [\"reader\", \"reader\"]\n",
       "f:4: usb must be a list in brackets, each \"reader\", \"magstripe\" or \"sonar\"\n"},
      {"[devices]\nusb = []\n", "f:4: nothing is searched; name a product, a serial port or an adapter\n"},
      {"[publish]\nids = \"hashed\"\n",
       "f:4: hashed IDs need site-key; \"openssl rand -hex 32\" makes one\n"},
      {"[topics]\nsite = \"a/b\"\n", "f:4: site must be 1 to 64 characters without + # $ % /\n"},
      {"certificate = \"/a\"\n",
       "f:3: certificate and certificate-key belong together; add certificate-key\n"},
      {"password = \"a\"\n", "f:3: a password is of no use without user\n"},
      {"[spool]\nfile = \"spool.db\"\n",
       "f:4: file must be a path from the root, such as \"/var/lib/tavlynd/spool.db\"\n"},
      {"password-file = \"secret\"\n",
       "f:3: password-file must be a path from the root, such as \"/etc/tavlyn/password\"\n"},
      {"[commands]\nallow = [\"bep\"]\n",
       "f:4: allow must be a list in brackets, each \"beep\", \"led\", \"relay\", \"read-card\", "
       "\"read-config\", \"load-config\" or \"re-read\"\n"},
      {"[devices]\nserial = [\"com03\"]\n",
       "f:4: serial must be a list in brackets, each \"com1\" to \"com256\", or \"com1:ascii\" for a reader "
       "that "
       "speaks text\n"},
  };
  for (const Case& one : kCases) EXPECT_EQ(MistakesIn(kUrl + one.text), one.told);
}

TEST(AgentSettings, ForgottenQuotes) {
  for (const char* line : {"user = desk", "user=desk", "ca = /etc/ca.pem", "user = [desk]"}) {
    EXPECT_NE(MistakesIn(kUrl + line + "\n").find("; a text needs quotes, \""), std::string::npos) << line;
  }
  for (const char* line : {"user = 5:", "user =", "user"}) {
    EXPECT_EQ(MistakesIn(kUrl + line + "\n").find("quotes, \""), std::string::npos) << line;
    EXPECT_NE(MistakesIn(kUrl + line + "\n"), "") << line;
  }
}

TEST(AgentSettings, OtherLanguagesInCommentsAndEscapes) {
  EXPECT_EQ(MistakesIn("# caf\u00e9\n" + kUrl + "[topics]\nsite = \"caf\\u00E9\"\n"), "");
  EXPECT_NE(MistakesIn(kUrl + "[topics]\nsite = \"caf\u00e9\"\n").find("f:4: a character"),
            std::string::npos);
}

TEST(AgentSettings, WithoutTlsOnlyToThisMachine) {
  const auto with = [](const std::string& url) { return MistakesIn("[broker]\nurl = \"" + url + "\"\n"); };
  for (const char* good : {"mqtt://localhost", "mqtt://127.3.2.1:1", "mqtt://[::1]", "mqtts://h:65535"}) {
    EXPECT_EQ(with(good), "") << good;
  }
  EXPECT_NE(with("mqtt://127.evil.example").find("without TLS"), std::string::npos);
  for (const char* bad :
       {"mqtt://", "mqtts://h:0", "mqtts://h:65536", "mqtts://u@h", "http://h", "mqtts://[::1"}) {
    EXPECT_NE(with(bad).find("url must be"), std::string::npos) << bad;
  }
  EXPECT_EQ(MistakesIn("[broker]\nurl = \"mqtt://h\"\nplain = true\n"), "");
}

TEST(AgentSettings, SecretsAreNotForOthers) {
  const boundary::ScratchFolder folder;
  const std::string path = folder.Path().string() + "/tavlynd.toml";
  std::ofstream(path) << kUrl << "user = \"a\"\npassword = \"b\"\n";
  chmod(path.c_str(), 0640);
  EXPECT_TRUE(LoadSettings(path).mistakes.empty());
  chmod(path.c_str(), 0644);
  ASSERT_EQ(LoadSettings(path).mistakes.size(), 1U);
  EXPECT_NE(LoadSettings(path).mistakes[0].text.find("chmod o-rwx"), std::string::npos);
  std::ofstream(path) << kUrl;
  EXPECT_TRUE(LoadSettings(path).mistakes.empty());
}

TEST(AgentSettings, APasswordMayBeInAFile) {
  const boundary::ScratchFolder folder;
  const std::string path = folder.Path().string() + "/tavlynd.toml";
  const std::string secret = folder.Path().string() + "/password";
  std::ofstream(path) << kUrl << "user = \"a\"\npassword-file = \"" << secret << "\"\n";
  EXPECT_EQ(LoadSettings(path).mistakes.size(), 1U);
  std::ofstream(secret) << "b c\nother\n";
  chmod(secret.c_str(), 0600);
  EXPECT_EQ(LoadSettings(path).settings.password, "b c");
  chmod(secret.c_str(), 0604);
  EXPECT_EQ(LoadSettings(path).mistakes.size(), 1U);
}

}  // namespace
}  // namespace tavlyn::agent
