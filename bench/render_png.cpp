// Rendering a representative medium widget (memory panel beside the compose
// button) to PNG at @3x; the host's budget is tens of milliseconds.
#include <benchmark/benchmark.h>

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

}  // namespace

BENCHMARK_MAIN();
