/// @file
/// What the system has against a file: the library does not say it.
#ifndef TAVLYN_FILES_HPP
#define TAVLYN_FILES_HPP

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <ios>
#include <string>
#include <system_error>

#include "values.hpp"

namespace tavlyn {
namespace detail {

/// What errno says after the file was opened, and read a little of it if it is to be read; 0 if that went
/// well.
inline int opening_problem(const std::string& path, std::ios::openmode mode, bool reads) {
  errno = 0;
  std::fstream file(path, mode | std::ios::binary);
  if (!file.is_open()) return errno;
  if (reads) file.peek();  // some systems open a folder too
  return file.bad() ? errno : 0;
}

inline int reading_problem(const std::string& path) { return opening_problem(path, std::ios::in, true); }

/// Leaves the file as it is, and none where there was none.
inline int writing_problem(const std::string& path) {
  const int problem = opening_problem(path, std::ios::in | std::ios::out, false);
  if (problem != ENOENT) return problem;
  const int of_new = opening_problem(path, std::ios::out | std::ios::app, false);
  if (of_new == 0) std::remove(path.c_str());
  return of_new;
}

/// A failure about a file, with the system's reason if it has one.
inline error bad_file(const error& failure, const std::string& path, const char* done, int problem) {
  const std::string reason = problem == 0 ? failure.text() : std::generic_category().message(problem);
  return {failure.word(), failure.text(), path + " could not be " + done + ": " + reason};
}

template <class Save>
void save_file(const std::string& path, Save&& save) {
  try {
    save();
  } catch (const error& failure) {
    throw bad_file(failure, path, "saved", writing_problem(path));
  }
}

template <class Load>
void load_file(const std::string& path, Load&& load) {
  try {
    load();
  } catch (const error& failure) {
    throw bad_file(failure, path, "loaded", reading_problem(path));
  }
}

}  // namespace detail
}  // namespace tavlyn

#endif
