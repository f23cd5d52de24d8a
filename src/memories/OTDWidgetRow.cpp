#include "memories/OTDWidgetRow.hpp"

#include "memories/DateLabel.hpp"
#include "memories/NoteText.hpp"
#include "platform/Clock.hpp"
#include "views/Builders.hpp"
#include "views/SchemeColors.hpp"

namespace quillan::memories {

using namespace views;

OTDWidgetRow::OTDWidgetRow(const Environment& environment, std::shared_ptr<store::Note> note)
    : colorScheme(environment.colorScheme), note(std::move(note)) {}

Node OTDWidgetRow::body(const Environment&) const {
  // A note without a date shows this year rather than stopping the widget.
  const platform::Date year = note->date().value_or(platform::Clock::now());
  return vstack(HorizontalAlignment::leading,
                {
                    hstack(VerticalAlignment::center,
                           {
                               dateLabel(year, "yyyy")
                                   .font(Font::system(12))
                                   .foregroundColor(secondaryLabelColor(colorScheme)),
                               text(noteText(note->info())).font(Font::system(15)).lineLimit(2),
                           }),
                })
      .foregroundColor(Color::primary());
}

}  // namespace quillan::memories
