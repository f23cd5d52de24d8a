#pragma once

#include <memory>

#include "store/Note.hpp"
#include "views/Environment.hpp"
#include "views/Node.hpp"

namespace quillan::memories {

// One memory: its year beside the first two lines of its text.
struct OTDWidgetRow {
  views::ColorScheme colorScheme;
  std::shared_ptr<store::Note> note;

  OTDWidgetRow(const views::Environment& environment, std::shared_ptr<store::Note> note);

  views::Node body(const views::Environment& environment) const;
};

}  // namespace quillan::memories
