// Formatting through a fresh DateFormatter per date, as the memory filter does
// for every note: with the ICU formatter cache each one costs a lookup, not a
// build of locale data.
#include <benchmark/benchmark.h>

#include "platform/Calendar.hpp"
#include "platform/DateFormatter.hpp"

namespace {

using quillan::platform::Calendar;
using quillan::platform::CalendarComponent;
using quillan::platform::Date;
using quillan::platform::DateFormatter;
using quillan::platform::DateFormatterStyle;
using quillan::platform::Locale;
using quillan::platform::TimeZone;

constexpr int kNotes = 100'000;

void setUpProcessDefaults() {
  Locale::setCurrent(*Locale::named("en_US"));
  TimeZone::setCurrent(*TimeZone::named("Europe/Berlin"));
}

void formatWithFreshFormatters(benchmark::State& state, bool useStyle) {
  setUpProcessDefaults();
  for (auto _ : state) {
    std::size_t characters = 0;
    for (int i = 0; i < kNotes; ++i) {
      DateFormatter formatter;
      if (useStyle) formatter.setDateStyle(DateFormatterStyle::medium);
      else formatter.setDateFormat("MMMM dd");
      characters += formatter.string(Date::fromReferenceSeconds(800'000'000.0 + i * 3'600.0)).size();
    }
    benchmark::DoNotOptimize(characters);
  }
  state.SetItemsProcessed(state.iterations() * kNotes);
}

void BM_FreshFormatterMonthDay100kNotes(benchmark::State& state) { formatWithFreshFormatters(state, false); }
void BM_FreshFormatterMediumStyle100kNotes(benchmark::State& state) { formatWithFreshFormatters(state, true); }

// The streak and today checks: Calendar::current() and a same-day test per note.
void BM_SameDayTest100kNotes(benchmark::State& state) {
  setUpProcessDefaults();
  const auto now = Date::fromReferenceSeconds(800'000'000.0);
  for (auto _ : state) {
    int sameDay = 0;
    for (int i = 0; i < kNotes; ++i) {
      const auto note = Date::fromReferenceSeconds(800'000'000.0 - i * 600.0);
      sameDay += Calendar::current().isDate(now, note, CalendarComponent::day) ? 1 : 0;
    }
    benchmark::DoNotOptimize(sameDay);
  }
  state.SetItemsProcessed(state.iterations() * kNotes);
}

BENCHMARK(BM_SameDayTest100kNotes)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FreshFormatterMonthDay100kNotes)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FreshFormatterMediumStyle100kNotes)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
