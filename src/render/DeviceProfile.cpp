#include "render/DeviceProfile.hpp"

#include <array>

namespace quillan::render {

namespace {

const std::array<DeviceProfile, 9> kProfiles{{
    {"430x932", 3, {170, 170}, {364, 170}, {364, 382}, {76, 76}, {172, 76}, {257, 26}},
    {"428x926", 3, {170, 170}, {364, 170}, {364, 382}, {76, 76}, {172, 76}, {257, 26}},
    {"414x896", 3, {169, 169}, {360, 169}, {360, 379}, {76, 76}, {160, 72}, {248, 26}},
    {"414x736", 3, {159, 159}, {348, 157}, {348, 357}, {76, 76}, {170, 76}, {248, 26}},
    {"393x852", 3, {158, 158}, {338, 158}, {338, 354}, {72, 72}, {160, 72}, {234, 26}},
    {"390x844", 3, {158, 158}, {338, 158}, {338, 354}, {72, 72}, {160, 72}, {234, 26}},
    {"375x812", 3, {155, 155}, {329, 155}, {329, 345}, {72, 72}, {157, 72}, {225, 26}},
    {"375x667", 2, {148, 148}, {321, 148}, {321, 324}, {68, 68}, {153, 68}, {225, 26}},
    {"320x568", 2, {141, 141}, {292, 141}, {292, 311}, {0, 0}, {0, 0}, {0, 0}},
}};

}  // namespace

Size DeviceProfile::sizeOf(views::WidgetFamily family) const {
  switch (family) {
    case views::WidgetFamily::systemSmall: return small;
    case views::WidgetFamily::systemMedium: return medium;
    case views::WidgetFamily::accessoryCircular: return circular;
  }
  return small;
}

DeviceProfile DeviceProfile::defaultProfile() { return *named("393x852"); }

std::optional<DeviceProfile> DeviceProfile::named(std::string_view name) {
  for (const auto& profile : kProfiles)
    if (profile.name == name) return profile;
  return std::nullopt;
}

std::vector<std::string> DeviceProfile::profileNames() {
  std::vector<std::string> names;
  for (const auto& profile : kProfiles) names.push_back(profile.name);
  return names;
}

}  // namespace quillan::render
