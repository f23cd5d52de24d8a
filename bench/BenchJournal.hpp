// The benchmarks' journal of 100,000 notes with images (see README.md), built
// once, in a forked child so that the writer's memory never counts against the
// measuring process, under /tmp keyed by kJournalVersion; later runs reuse it.
// Change the version when the journal's recipe changes. The same recipe
// stretched to other sizes (a million notes) lives in folders of its own.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "fixtures/JournalWriter.hpp"

namespace quillan::bench {

inline constexpr const char* kJournalVersion = "v1";
inline constexpr int kNotes = 100'000;
// Every 40 minutes backwards from just before now: about 7.6 years, so every
// earlier year has memories on today's day, and today and the four days
// before it are written.
inline constexpr double kNow = 800'000'000.0;  // 2026-05-09T16:53:20Z
inline constexpr const char* kNowText = "2026-05-09T16:53:20Z";
inline constexpr double kSpacingSeconds = 40 * 60.0;
inline constexpr int kImageEvery = 20;
inline constexpr std::size_t kImageBytes = 16 * 1024;
inline constexpr const char* kTimeZone = "Europe/Berlin";
inline constexpr const char* kLocale = "en_US";

inline const char* const kTexts[] = {
    "A **long** walk by the _river_, then tea with Ana. We talked about the week ahead and the garden.",
    "Rain all day. Read two chapters of the novel and cooked ~~soup~~ a stew that took far too long.",
    "Short one: tired, but the *presentation* went well. Remember to call the bank tomorrow morning.",
    "Market in the morning, [photos](https://example.org) in the afternoon, and a quiet evening at home.",
};

inline std::filesystem::path benchRoot(int notes = kNotes) {
  auto name = std::string("quillan-budget-journal-") + kJournalVersion;
  if (notes != kNotes) name += "-" + std::to_string(notes);
  return std::filesystem::temp_directory_path() / name;
}
inline std::filesystem::path groupDirectory(int notes = kNotes) { return benchRoot(notes) / "group"; }
inline std::filesystem::path supportDirectory(int notes = kNotes) { return benchRoot(notes) / "support"; }

inline void writeJournal(const std::filesystem::path& file, int notes) {
  fixtures::JournalWriter writer(file);
  writer.begin();
  const fixtures::Bytes image(kImageBytes, 0x89);
  for (int i = 0; i < notes; ++i) {
    const auto note =
        writer.addNote({.date = platform::Date::fromReferenceSeconds(kNow - 60.0 - i * kSpacingSeconds),
                        .info = std::string(kTexts[i % 4]) + " (" + std::to_string(i) + ")",
                        .lastUpdate = platform::Date::fromReferenceSeconds(kNow - 30.0 - i * kSpacingSeconds),
                        .uuid = fixtures::Bytes(16, static_cast<std::uint8_t>(i))});
    if (i % kImageEvery == 0) writer.addImage({.owner = note, .imgData = image});
  }
  writer.commit();
  writer.close();
}

// Built in a child so that this process's peak RSS is the widgets' alone;
// written beside the final folder and renamed into place, so that an
// interrupted build is never mistaken for a journal.
inline void ensureJournal(int notes = kNotes) {
  if (std::filesystem::exists(groupDirectory(notes) / "Quillan.sqlite")) return;
  const auto staging = benchRoot(notes).string() + ".partial";
  std::filesystem::remove_all(staging);
  std::filesystem::create_directories(std::filesystem::path(staging) / "group");
  std::filesystem::create_directories(std::filesystem::path(staging) / "support");
  const pid_t child = ::fork();
  if (child == 0) {
    writeJournal(std::filesystem::path(staging) / "group" / "Quillan.sqlite", notes);
    std::_Exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) std::abort();
  std::filesystem::rename(staging, benchRoot(notes));
}

}  // namespace quillan::bench
