// Devices as the simulator has them (CMakeLists.txt).
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <functional>
#include <random>
#include <system_error>
#include <thread>

#include "tavlyn.hpp"

namespace {

constexpr const char* kFirst = "0400123456";
constexpr const char* kSecond = "0400123457";

TEST(CppConnect, TakesTheFirstReaderOrTheOneThatIsNamed) {
  EXPECT_EQ(tavlyn::connect().serial_number(), kFirst);
  EXPECT_EQ(tavlyn::connect(tavlyn::selection().serial(kSecond)).luid(), 2);
  EXPECT_EQ(tavlyn::connect(tavlyn::selection().luid(2)).serial_number(), kSecond);
  EXPECT_THROW(tavlyn::connect(tavlyn::selection().index(2)), tavlyn::error);
}

TEST(CppConnect, IsOneAtATimeAndEndsWithTheLastObject) {
  auto first = std::make_unique<tavlyn::reader>(tavlyn::connect());
  const auto copy = std::make_unique<tavlyn::reader>(*first);
  first.reset();
  EXPECT_EQ(copy->serial_number(), kFirst);
  EXPECT_THROW(tavlyn::connect(), tavlyn::error);
  EXPECT_EQ(GetDevCnt(), 2);
}

TEST(CppConnect, LeavesNothingOpen) {
  tavlyn::connect();
  EXPECT_EQ(GetDevCnt(), 0);
  EXPECT_THROW(tavlyn::connect(tavlyn::selection().com(9)), tavlyn::error);
  EXPECT_EQ(GetDevCnt(), 0);
}

TEST(CppConnect, SearchesInOnePlace) {
  const auto both = tavlyn::selection().com(9).ip({127, 0, 0, 1}, 1);
  try {
    tavlyn::connect(both);
    FAIL();
  } catch (const std::invalid_argument& error) {
    EXPECT_STREQ(error.what(), "a COM port or an address, not both");
  }
  EXPECT_THROW(tavlyn::connect_all(both), std::invalid_argument);
}

TEST(CppConnect, MissesWhatIsNotThere) {
  try {
    tavlyn::connect(tavlyn::selection().serial("0400999999"));
    FAIL();
  } catch (const tavlyn::error& error) {
    EXPECT_STREQ(error.what(), "no reader has this serial number");
    EXPECT_EQ(error.word(), tavlyn::error_word());
  }
}

TEST(CppReader, HasACard) {
  const auto reader = tavlyn::connect();
  EXPECT_FALSE(reader.firmware().empty());
  for (const tavlyn::card_id& card : reader.cards()) {
    EXPECT_EQ(card.hex(), "03030201");
    break;
  }
}

TEST(CppReader, ChangesOneOfItsConfigurations) {
  const auto reader = tavlyn::connect(tavlyn::selection().index(1));
  auto config = reader.config(1);
  config.id_hold_ms(2000);
  config.beep_on_id(false);
  config.commit();
  config.reload();
  EXPECT_EQ(config.id_hold_ms(), 2000);
  EXPECT_FALSE(config.beep_on_id());
  EXPECT_EQ(reader.config().id_hold_ms(), 1000);
  EXPECT_THROW(reader.config(2).id_hold_ms(), std::out_of_range);
}

TEST(CppReader, KeepsWhatItHadWhenAValueIsRefused) {
  auto config = tavlyn::connect().config();
  const int before = config.id_hold_ms();
  try {
    config.id_hold_ms(12751);
    FAIL();
  } catch (const tavlyn::error& error) {
    EXPECT_EQ(error.word(), tavlyn::error_word(TAVLYN_ERR_TIME_PARMS + 1));
    EXPECT_EQ(error.text(), "a value is out of its range");
    EXPECT_STREQ(error.what(), "id_hold_ms is 0 to 12750 ms, not 12751 (error word 0x201031)");
  }
  try {
    config.id_hold_ms(70000);
    FAIL();
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "id_hold_ms is 0 to 12750 ms, not 70000");
  }
  EXPECT_EQ(config.id_hold_ms(), before);
}

TEST(CppReader, SaysOfAFileThatIsNotThereThatThereIsNoReason) {
  const auto reader = tavlyn::connect();
  try {
    reader.config().id_bits(0);
    FAIL();
  } catch (const tavlyn::error&) {
  }
  try {
    reader.load("/nowhere/desk.hwg");
    FAIL();
  } catch (const tavlyn::error& error) {
    EXPECT_EQ(error.word(), tavlyn::error_word());
  }
}

std::string Message(const std::function<void()>& use) {
  try {
    use();
  } catch (const std::exception& error) {
    return error.what();
  }
  return "nothing was thrown";
}

TEST(CppReader, SaysWhatTheSystemHasAgainstAFile) {
  const auto reader = tavlyn::connect();
  const std::string folder = testing::TempDir();
  const std::string missing = "/nowhere/desk.hwg";
  const auto begins = [](const std::function<void()>& use, const std::string& what, std::errc reason) {
    const std::string begin = what + ": " + std::make_error_code(reason).message();
    EXPECT_EQ(Message(use).substr(0, begin.size()), begin);  // the error word may come after it
  };
  begins([&] { reader.load(missing); }, missing + " could not be loaded",
         std::errc::no_such_file_or_directory);
  begins([&] { reader.save(missing); }, missing + " could not be saved",
         std::errc::no_such_file_or_directory);
  begins([&] { reader.load(folder); }, folder + " could not be loaded", std::errc::is_a_directory);
  begins([&] { reader.save_secure(folder); }, folder + " could not be saved", std::errc::is_a_directory);
  begins([&] { reader.load_secure(folder); }, folder + " could not be loaded", std::errc::is_a_directory);
}

// A trial leaves no file behind, and an existing one as it was.
TEST(CppFiles, AreLeftAsTheyWere) {
  const std::string path = testing::TempDir() + "tavlyn-" + std::to_string(std::random_device()());
  EXPECT_EQ(tavlyn::detail::writing_problem(path), 0);
  EXPECT_EQ(tavlyn::detail::reading_problem(path), ENOENT);
  std::ofstream(path) << "kept";
  EXPECT_EQ(tavlyn::detail::writing_problem(path), 0);
  std::string text;
  std::ifstream(path) >> text;
  EXPECT_EQ(text, "kept");
  std::remove(path.c_str());
}

TEST(CppReader, RefusesWhatNoOutputHas) {
  const auto reader = tavlyn::connect();
  EXPECT_THROW(reader.beep(257), std::out_of_range);
  EXPECT_THROW(reader.beep(3, true), std::out_of_range);
  EXPECT_THROW(reader.volume(256), std::out_of_range);
}

TEST(CppReader, TakesCommandsOfEightBytes) {
  const std::uint8_t command[9] = {0x8A};
  const auto reader = tavlyn::connect();
  EXPECT_EQ(reader.raw({command, 1})[2], 0x31);
  EXPECT_THROW(reader.raw({command, 9}), std::out_of_range);
  EXPECT_THROW(reader.raw({}), std::out_of_range);
}

// Each makes its own reader active for each of its calls.
TEST(CppReaders, AreUsedByThreadsAtTheSameTime) {
  const auto readers = tavlyn::connect_all();
  ASSERT_EQ(readers.size(), 2U);
  const auto work = [](const tavlyn::reader& reader, const char* serial, int value) {
    for (int time = 0; time < 50; ++time) {
      EXPECT_EQ(reader.serial_number(), serial);
      reader.config().lock_out_ms(value);
      EXPECT_EQ(reader.config().lock_out_ms(), value);
      EXPECT_EQ(reader.with([] { return GetActDev(); }), value == 100 ? 0 : 1);
    }
  };
  std::thread other(work, readers[1], kSecond, 200);
  work(readers[0], kFirst, 100);
  other.join();
}

// A reader that another thread is using is not given the card of the one beside it.
TEST(CppReaders, HaveTheirOwnCards) {
  const auto readers = tavlyn::connect_all();
  ASSERT_EQ(readers.size(), 2U);
  std::atomic<bool> ends = false;
  std::thread other([&] {
    while (!ends) readers[0].beep();
  });
  for (int time = 0; time < 20; ++time) {
    const auto own = readers[1].read_card();
    EXPECT_TRUE(own);
    EXPECT_NE(readers[0].read_card(), own);
  }
  ends = true;
  other.join();
}

TEST(CppMagstripe, HasSwipes) {
  const auto magstripe = tavlyn::connect<tavlyn::magstripe>();
  EXPECT_EQ(magstripe.serial_number(), "");
  const auto swipe = magstripe.read_swipe();
  ASSERT_TRUE(swipe);
  ASSERT_EQ(swipe->size(), 1U);
  EXPECT_EQ(swipe->front().number, 1);
  EXPECT_EQ(swipe->front().text, "%B12^DOE/JOHN^?9");
  EXPECT_EQ(swipe->front().raw.size(), 16U);
  EXPECT_FALSE(magstripe.read_swipe());
  for (const auto& one : magstripe.swipes(std::chrono::milliseconds(1))) ADD_FAILURE() << one.size();
}

TEST(CppSonar, SeesSomebody) {
  const auto sonar = tavlyn::connect<tavlyn::sonar>();
  for (const tavlyn::distance& seen : sonar.ranges()) {
    EXPECT_EQ(seen.inches, 25);
    EXPECT_TRUE(seen.present);
    break;
  }
  std::vector<bool> told;
  for (const bool present : sonar.presence(std::chrono::milliseconds(1))) told.push_back(present);
  EXPECT_EQ(told, std::vector<bool>{true});
  auto config = sonar.config();
  config.ping_ms(301);
  config.commit();
  config.reload();
  EXPECT_EQ(config.ping_ms(), 300);
}

}  // namespace
