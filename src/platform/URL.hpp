#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace quillan::platform {

// A URL as the platform's URL type keeps it: the text it was made from
// (`absoluteString`) with its parts read per RFC 3986. Deep links are custom
// schemes ("widget-deeplink://OnThisDay"); store locations are file URLs.
class URL {
 public:
  // URL(string:): empty for text that is not a URL reference (empty text,
  // characters outside RFC 3986, a bad percent escape, a malformed scheme).
  static std::optional<URL> parse(std::string_view text);
  // Parses a literal of the program; a failure is a programming error and stops
  // the process with the nil report.
  static URL literal(std::string_view text);
  static URL fileURL(const std::filesystem::path& path);

  const std::string& absoluteString() const { return text_; }
  std::string scheme() const;
  std::string host() const;
  // The percent-decoded path ("/2026-03-05" for ...://RecordDate/2026-03-05).
  std::string path() const;
  bool isFileURL() const { return scheme() == "file"; }
  // The file-system path of a file URL.
  std::filesystem::path filePath() const { return std::filesystem::path(path()); }

  // Appends one path component, inserting a "/" unless the path already ends
  // in one; characters not allowed in a path are percent-encoded.
  URL appendingPathComponent(std::string_view component) const;

  bool operator==(const URL& other) const { return text_ == other.text_; }

 private:
  explicit URL(std::string text) : text_(std::move(text)) {}
  std::string text_;
};

}  // namespace quillan::platform
