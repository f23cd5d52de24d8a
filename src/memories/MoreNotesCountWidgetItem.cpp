#include "memories/MoreNotesCountWidgetItem.hpp"

#include <string>

#include "views/Builders.hpp"
#include "views/SchemeColors.hpp"

namespace quillan::memories {

using namespace views;

MoreNotesCountWidgetItem::MoreNotesCountWidgetItem(const Environment& environment, std::ptrdiff_t count)
    : colorScheme(environment.colorScheme), count(count) {}

Node MoreNotesCountWidgetItem::body(const Environment&) const {
  return localizedText("%lld more", std::to_string(count) + " more")
      .font(Font::system(13))
      .foregroundColor(secondaryLabelColor(colorScheme))
      .padding(EdgeSet::horizontal(), 5)
      .background(capsule(RoundedCornerStyle::continuous).fill(Color::gray().withOpacity(0.1)));
}

}  // namespace quillan::memories
