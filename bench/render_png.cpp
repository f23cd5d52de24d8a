// Rendering a representative medium widget (memory panel beside the compose
// button) to PNG at @3x; the host's budget is tens of milliseconds.
#include <benchmark/benchmark.h>
#include <png.h>

#include "render/PixelImage.hpp"
#include "render/PngEncoder.hpp"
#include "render/Renderer.hpp"
#include "views/Builders.hpp"

namespace {

using namespace quillan::views;

Node mediumTree() {
  Node panel = vstack(
      HorizontalAlignment::leading,
      {
          hstack({text("May 17").font(Font::system(18, Weight::heavy)).foregroundColor(Color::red()).offset(0, 2.5),
                  spacer(0)}),
          localizedText("On This Day").font(Font::system(20, Weight::heavy)),
          hstack(
              {text("2021").font(Font::system(12)).foregroundColor(Color::systemGray()),
               text(quillan::platform::AttributedString::fromInlineMarkdown("A **long** walk by the _river_, then tea"))
                   .font(Font::system(15))
                   .lineLimit(2)}),
          hstack({spacer(2.5),
                  localizedText("%lld more", "3 more")
                      .font(Font::system(13))
                      .padding(EdgeSet::horizontal(), 5)
                      .background(capsule(RoundedCornerStyle::continuous).fill(Color::gray().withOpacity(0.1))),
                  spacer(2.5)}),
      });
  const auto gradient = LinearGradient::evenlySpaced({Color::orange(), Color::orange().withOpacity(0.75)},
                                                     UnitPoint::bottomLeading(), UnitPoint::topTrailing());
  Node compose =
      vstack(HorizontalAlignment::leading,
             {
                 text("What made you smile today?").font(Font::system(15)).fontWeight(Weight::heavy),
                 spacer(0),
                 hstack({spacer(0), image("square.and.pencil").imageScale(ImageScale::small).font(Font::title())}),
             })
          .foregroundColor(Color::white())
          .padding(12.5)
          .background(containerRelativeShape().fill(gradient));
  return hstack({link("widget-deeplink://OnThisDay", panel),
                 link("widget-deeplink://AddRecord", compose).padding(Edge::leading, 10)})
      .containerBackground(ContainerBackgroundPlacement::widget, Alignment::center, color(Color::white()));
}

void BM_RenderMediumPNG(benchmark::State& state) {
  const Node tree = mediumTree();
  quillan::render::RenderContext context;
  context.env.family = WidgetFamily::systemMedium;
  context.scale = static_cast<double>(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(quillan::render::renderToPNGBytes(tree, context));
}
BENCHMARK(BM_RenderMediumPNG)->Arg(1)->Arg(3)->Unit(benchmark::kMillisecond);

// The encoder's settings on the same widget at @3x: time per picture, and its
// size in bytes. Level 6 with every filter is what libpng does by default.
constexpr int kFilterChoices[] = {PNG_FILTER_NONE, PNG_FILTER_SUB, PNG_FILTER_UP, PNG_FILTER_PAETH, PNG_ALL_FILTERS};

void BM_EncodeMediumPNG(benchmark::State& state) {
  quillan::render::RenderContext context;
  context.env.family = WidgetFamily::systemMedium;
  const auto image = quillan::render::decodePNG(quillan::render::renderToPNGBytes(mediumTree(), context));
  const quillan::render::PixelRows rows{reinterpret_cast<const std::uint8_t*>(image.pixels.data()), image.width,
                                        image.height, image.width * 4, false};
  const quillan::render::PngSettings settings{static_cast<int>(state.range(0)),
                                              kFilterChoices[static_cast<std::size_t>(state.range(1))]};
  std::size_t size = 0;
  for (auto _ : state) size = quillan::render::encodePNG(rows, settings).size();
  state.counters["bytes"] = static_cast<double>(size);
}
BENCHMARK(BM_EncodeMediumPNG)
    ->ArgsProduct({{1, 2, 3, 4, 5, 6}, {0, 1, 2, 3, 4}})
    ->ArgNames({"level", "filter"})
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
