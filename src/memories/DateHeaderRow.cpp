#include "memories/DateHeaderRow.hpp"

#include "memories/DateLabel.hpp"
#include "views/Builders.hpp"

namespace quillan::memories {

using namespace views;

Node dateHeaderRow(platform::Date headerDate) {
  return hstack(VerticalAlignment::center, {
                                               vstack(HorizontalAlignment::center,
                                                      {
                                                          dateLabel(headerDate, "LLL dd")
                                                              .font(Font::system(18))
                                                              .fontWeight(Weight::heavy)
                                                              .foregroundColor(Color::red())
                                                              .offset(0, 2.5),
                                                      }),
                                               spacer(0),
                                           });
}

}  // namespace quillan::memories
