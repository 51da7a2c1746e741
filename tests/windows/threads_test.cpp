// The locks and the thread values that the DLL gives its runtime, alone in a library of their own.
#include "platform/windows/threads.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <cerrno>

#include "platform/windows/system.h"

namespace tavlyn::platform {
namespace {

template <typename Function>
Function* InLibrary(HMODULE library, const char* name) {
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

struct Threads {
  HMODULE library = LoadLibraryA(TAVLYN_THREADS);
  decltype(pthread_mutex_init)* init = InLibrary<decltype(pthread_mutex_init)>(library, "pthread_mutex_init");
  decltype(pthread_mutex_lock)* lock = InLibrary<decltype(pthread_mutex_lock)>(library, "pthread_mutex_lock");
  decltype(pthread_mutex_unlock)* unlock =
      InLibrary<decltype(pthread_mutex_unlock)>(library, "pthread_mutex_unlock");
  decltype(pthread_mutex_destroy)* destroy =
      InLibrary<decltype(pthread_mutex_destroy)>(library, "pthread_mutex_destroy");
  decltype(pthread_cond_wait)* wait = InLibrary<decltype(pthread_cond_wait)>(library, "pthread_cond_wait");
  decltype(pthread_cond_broadcast)* broadcast =
      InLibrary<decltype(pthread_cond_broadcast)>(library, "pthread_cond_broadcast");
  decltype(pthread_key_create)* createKey =
      InLibrary<decltype(pthread_key_create)>(library, "pthread_key_create");
  decltype(pthread_getspecific)* get =
      InLibrary<decltype(pthread_getspecific)>(library, "pthread_getspecific");
  decltype(pthread_setspecific)* set =
      InLibrary<decltype(pthread_setspecific)>(library, "pthread_setspecific");
  decltype(FreeThreads)* freeAll =
      InLibrary<decltype(FreeThreads)>(library, "_ZN6tavlyn8platform11FreeThreadsEv");
};

class ThreadsTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(threads_.library, nullptr); }
  void TearDown() override {
    threads_.freeAll();
    EXPECT_TRUE(FreeLibrary(threads_.library));
  }

  static void RunInThread(LPTHREAD_START_ROUTINE work, void* argument) {
    HANDLE thread = CreateThread(nullptr, 0, work, argument, 0, nullptr);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
  }

  Threads threads_;
};

// What two threads share: one waits for the word of the other.
struct Meeting {
  Threads* threads;
  pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  pthread_cond_t changed = PTHREAD_COND_INITIALIZER;
  bool told = false;
};

DWORD WINAPI Tell(void* argument) {
  auto& meeting = *static_cast<Meeting*>(argument);
  meeting.threads->lock(&meeting.mutex);
  meeting.told = true;
  meeting.threads->broadcast(&meeting.changed);
  meeting.threads->unlock(&meeting.mutex);
  return 0;
}

TEST_F(ThreadsTest, AWaitEndsWithTheWordOfAnotherThread) {
  Meeting meeting{&threads_};
  EXPECT_EQ(threads_.lock(&meeting.mutex), 0);
  HANDLE other = CreateThread(nullptr, 0, Tell, &meeting, 0, nullptr);
  while (!meeting.told) EXPECT_EQ(threads_.wait(&meeting.changed, &meeting.mutex), 0);
  EXPECT_EQ(threads_.unlock(&meeting.mutex), 0);
  WaitForSingleObject(other, INFINITE);
  CloseHandle(other);
  EXPECT_EQ(threads_.destroy(&meeting.mutex), 0);
  EXPECT_EQ(threads_.init(&meeting.mutex, nullptr), 0);
  EXPECT_EQ(meeting.mutex, 0) << "the system's lock begins as zero";
}

struct Kept {
  Threads* threads;
  pthread_key_t key = 0;
};
void* ended = nullptr;

DWORD WINAPI KeepOwn(void* argument) {
  const auto& kept = *static_cast<Kept*>(argument);
  EXPECT_EQ(kept.threads->get(kept.key), nullptr);
  EXPECT_EQ(kept.threads->set(kept.key, argument), 0);
  EXPECT_EQ(kept.threads->get(kept.key), argument);
  return 0;
}

DWORD WINAPI KeepNothing(void* argument) {
  const auto& kept = *static_cast<Kept*>(argument);
  EXPECT_EQ(kept.threads->set(kept.key, argument), 0);
  EXPECT_EQ(kept.threads->set(kept.key, nullptr), 0);
  return 0;
}

TEST_F(ThreadsTest, AValueEndsWithItsThread) {
  Kept kept{&threads_};
  ended = nullptr;
  ASSERT_EQ(threads_.createKey(&kept.key, [](void* value) { ended = value; }), 0);
  RunInThread(KeepNothing, &kept);
  EXPECT_EQ(ended, nullptr);
  RunInThread(KeepOwn, &kept);
  EXPECT_EQ(ended, &kept);
  pthread_key_t second = 0;
  EXPECT_EQ(threads_.createKey(&second, nullptr), EAGAIN) << "there is one";
  threads_.freeAll();
  EXPECT_EQ(threads_.createKey(&second, nullptr), 0);
}

}  // namespace
}  // namespace tavlyn::platform
