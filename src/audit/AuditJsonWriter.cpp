#include "audit/AuditJsonWriter.hpp"

#include <nlohmann/json.hpp>

namespace quillan::audit {

namespace {

constexpr int kAuditJsonVersion = 1;

nlohmann::ordered_json countsJson(const std::array<std::size_t, 3>& counts) {
  nlohmann::ordered_json json;
  for (const auto& row : enumNames(Severity{})) json[std::string(row.name)] = counts[static_cast<int>(row.value)];
  return json;
}

}  // namespace

AuditJsonWriter::AuditJsonWriter(std::ostream& out, const AuditMatrix& matrix) : out_(out) {
  const nlohmann::ordered_json lists = {{"kinds", matrix.kinds},
                                        {"locales", matrix.locales},
                                        {"dynamicTypes", matrix.dynamicTypes},
                                        {"colorSchemes", matrix.colorSchemes},
                                        {"renderingModes", matrix.renderingModes}};
  out_ << "{\n\"version\": " << kAuditJsonVersion << ",\n\"matrix\": " << lists.dump() << ",\n\"findings\": [";
}

void AuditJsonWriter::add(std::string_view line, Severity severity, bool accepted) {
  out_ << (first_ ? "\n" : ",\n");
  first_ = false;
  if (accepted) {
    // The line is an object: the mark goes in before its closing brace.
    out_ << line.substr(0, line.size() - 1) << ",\"baseline\":true}";
  } else {
    out_ << line;
    ++newCounts_[static_cast<int>(severity)];
  }
  ++counts_[static_cast<int>(severity)];
}

void AuditJsonWriter::finish(std::size_t cases) {
  out_ << "\n],\n\"cases\": " << cases << ",\n\"counts\": " << countsJson(counts_).dump()
       << ",\n\"newCounts\": " << countsJson(newCounts_).dump() << "\n}\n";
  out_.flush();
}

}  // namespace quillan::audit
