#include "pages/PageSkeleton.hpp"

#include "pages/HtmlText.hpp"

namespace quillan::pages {

std::string htmlPage(std::string_view title, std::string_view styleRules, std::string_view body) {
  const auto escapedTitle = htmlEscaped(title);
  std::string html = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>" + escapedTitle +
                     "</title>\n<style>\n";
  html += styleRules;
  html += "</style>\n</head>\n<body>\n<h1>" + escapedTitle + "</h1>\n";
  html += body;
  return html + "</body>\n</html>\n";
}

}  // namespace quillan::pages
