// Waits in many ways, each for so many seconds, and says of each whether its clock agrees.
#define _GNU_SOURCE
#include <errno.h>
#include <poll.h>
#include <pthread.h>
#include <semaphore.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/epoll.h>
#include <sys/select.h>
#include <sys/time.h>
#include <sys/timerfd.h>
#include <threads.h>
#include <time.h>
#include <unistd.h>

static long length;  // seconds

static struct timespec moment(clockid_t clock) {
  struct timespec now;
  clock_gettime(clock, &now);
  now.tv_sec += length;
  return now;
}

static void await_alarm(void) {
  sigset_t set;
  int got = 0;
  sigemptyset(&set);
  sigaddset(&set, SIGALRM);
  sigwait(&set, &got);
}

static void by_alarm(void) {
  alarm((unsigned)length);
  await_alarm();
}

static void by_setitimer(void) {
  struct itimerval wanted = {{0, 0}, {length, 0}}, left;
  setitimer(ITIMER_REAL, &wanted, NULL);
  getitimer(ITIMER_REAL, &left);
  if (left.it_value.tv_sec > length || left.it_value.tv_sec < length / 2) puts("getitimer disagrees");
  await_alarm();
}

// The smallest time is not none.
static void by_short_setitimer(void) {
  struct itimerval wanted = {{0, 1}, {0, 1}}, none = {{0, 0}, {0, 0}};
  setitimer(ITIMER_REAL, &wanted, NULL);
  await_alarm();
  setitimer(ITIMER_REAL, &none, NULL);
  sleep((unsigned)length);
  sigset_t set;
  const struct timespec at_once = {0, 0};
  sigemptyset(&set);
  sigaddset(&set, SIGALRM);
  while (sigtimedwait(&set, NULL, &at_once) > 0) {
  }
}

static void by_timer(int flags) {
  timer_t timer;
  struct itimerspec wanted = {{0, 0}, {length, 0}}, left;
  if (flags != 0) wanted.it_value = moment(CLOCK_MONOTONIC);
  timer_create(CLOCK_MONOTONIC, NULL, &timer);
  timer_settime(timer, flags, &wanted, NULL);
  timer_gettime(timer, &left);
  if (left.it_value.tv_sec > length || left.it_value.tv_sec < length / 2) puts("timer_gettime disagrees");
  await_alarm();
  timer_delete(timer);
}
static void by_timer_length(void) { by_timer(0); }
static void by_timer_moment(void) { by_timer(TIMER_ABSTIME); }

static void by_timerfd(clockid_t clock, int flags) {
  const int descriptor = timerfd_create(clock, 0);
  const struct itimerspec none = {{0, 0}, {0, 0}};
  struct itimerspec wanted = {{0, 0}, {length, 0}}, left;
  unsigned long long times = 0;
  if (flags != 0) wanted.it_value = moment(clock);
  timerfd_settime(descriptor, flags, &wanted, NULL);
  timerfd_gettime(descriptor, &left);
  if (left.it_value.tv_sec > length || left.it_value.tv_sec < length / 2) puts("timerfd_gettime disagrees");
  timerfd_settime(descriptor, flags, &none, NULL);
  timerfd_gettime(descriptor, &left);
  if (left.it_value.tv_sec != 0 || left.it_value.tv_nsec != 0) puts("timerfd_settime does not end it");
  timerfd_settime(descriptor, flags, &wanted, NULL);
  if (read(descriptor, &times, sizeof times) != (ssize_t)sizeof times) puts("timerfd is not read");
  close(descriptor);
}
static void by_timerfd_length(void) { by_timerfd(CLOCK_MONOTONIC, 0); }
static void by_timerfd_moment(void) { by_timerfd(CLOCK_MONOTONIC, TFD_TIMER_ABSTIME); }
static void by_timerfd_day(void) { by_timerfd(CLOCK_REALTIME, TFD_TIMER_ABSTIME); }

static void by_poll(void) { poll(NULL, 0, (int)length * 1000); }
static void by_ppoll(void) {
  const struct timespec wanted = {length, 0};
  ppoll(NULL, 0, &wanted, NULL);
}
static void by_select(void) {
  struct timeval wanted = {length, 0};
  select(0, NULL, NULL, NULL, &wanted);
}
static void by_epoll_wait(void) {
  struct epoll_event event;
  const int descriptor = epoll_create1(0);
  epoll_wait(descriptor, &event, 1, (int)length * 1000);
  close(descriptor);
}
static void by_epoll_pwait2(void) {
  struct epoll_event event;
  const struct timespec wanted = {length, 0};
  const int descriptor = epoll_create1(0);
  epoll_pwait2(descriptor, &event, 1, &wanted, NULL);
  close(descriptor);
}
static void by_sigtimedwait(void) {
  const struct timespec wanted = {length, 0};
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGUSR1);
  sigtimedwait(&set, NULL, &wanted);
}

static void by_mutex(void) {
  pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  const struct timespec until = moment(CLOCK_REALTIME);
  pthread_mutex_lock(&mutex);
  pthread_mutex_timedlock(&mutex, &until);
}
static void by_mutex_clock(void) {
  pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  const struct timespec until = moment(CLOCK_MONOTONIC);
  pthread_mutex_lock(&mutex);
  pthread_mutex_clocklock(&mutex, CLOCK_MONOTONIC, &until);
}
static void by_rwlock(void) {
  pthread_rwlock_t lock = PTHREAD_RWLOCK_INITIALIZER;
  const struct timespec until = moment(CLOCK_REALTIME);
  pthread_rwlock_rdlock(&lock);
  pthread_rwlock_timedwrlock(&lock, &until);
}
static void by_semaphore(void) {
  sem_t semaphore;
  const struct timespec until = moment(CLOCK_REALTIME);
  sem_init(&semaphore, 0, 0);
  sem_timedwait(&semaphore, &until);
}
static void by_condition(void) {
  pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  pthread_cond_t condition = PTHREAD_COND_INITIALIZER;
  const struct timespec until = moment(CLOCK_REALTIME);
  pthread_mutex_lock(&mutex);
  while (pthread_cond_timedwait(&condition, &mutex, &until) != ETIMEDOUT) {
  }
}
static void by_thrd_sleep(void) {
  const struct timespec wanted = {length, 0};
  thrd_sleep(&wanted, NULL);
}
static void by_mtx(void) {
  mtx_t mutex;
  const struct timespec until = moment(CLOCK_REALTIME);
  mtx_init(&mutex, mtx_timed);
  mtx_lock(&mutex);
  mtx_timedlock(&mutex, &until);
}
static void by_cnd(void) {
  mtx_t mutex;
  cnd_t condition;
  const struct timespec until = moment(CLOCK_REALTIME);
  mtx_init(&mutex, mtx_plain);
  cnd_init(&condition);
  mtx_lock(&mutex);
  while (cnd_timedwait(&condition, &mutex, &until) != thrd_timedout) {
  }
}

static const struct {
  const char* name;
  void (*wait)(void);
} ways[] = {{"alarm", by_alarm},
            {"setitimer", by_setitimer},
            {"short setitimer", by_short_setitimer},
            {"timer", by_timer_length},
            {"timer to a moment", by_timer_moment},
            {"timerfd", by_timerfd_length},
            {"timerfd to a moment", by_timerfd_moment},
            {"timerfd to a time of day", by_timerfd_day},
            {"poll", by_poll},
            {"ppoll", by_ppoll},
            {"select", by_select},
            {"epoll_wait", by_epoll_wait},
            {"epoll_pwait2", by_epoll_pwait2},
            {"sigtimedwait", by_sigtimedwait},
            {"pthread_mutex_timedlock", by_mutex},
            {"pthread_mutex_clocklock", by_mutex_clock},
            {"pthread_rwlock_timedwrlock", by_rwlock},
            {"sem_timedwait", by_semaphore},
            {"pthread_cond_timedwait", by_condition},
            {"thrd_sleep", by_thrd_sleep},
            {"mtx_timedlock", by_mtx},
            {"cnd_timedwait", by_cnd}};

int main(int argc, char** argv) {
  sigset_t set;
  length = argc > 1 ? atol(argv[1]) : 1;
  sigemptyset(&set);
  sigaddset(&set, SIGALRM);
  sigaddset(&set, SIGUSR1);
  sigprocmask(SIG_BLOCK, &set, NULL);
  for (size_t i = 0; i < sizeof ways / sizeof *ways; ++i) {
    struct timespec before, after;
    clock_gettime(CLOCK_MONOTONIC, &before);
    ways[i].wait();
    clock_gettime(CLOCK_MONOTONIC, &after);
    const long long passed = (after.tv_sec - before.tv_sec) * 1000000000LL + after.tv_nsec - before.tv_nsec;
    if (passed < length * 1000000000LL)
      printf("%s: %lld ns too early\n", ways[i].name, length * 1000000000LL - passed);
  }
  puts("waited");
  return 0;
}
