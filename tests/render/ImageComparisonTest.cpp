#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "render/ImageComparison.hpp"
#include "render/PerceptualColorDistance.hpp"
#include "render/PixelImage.hpp"
#include "render/Renderer.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::render {
namespace {

using Pixel = PixelImage::Pixel;

constexpr Pixel kWhite{255, 255, 255, 255};
constexpr Pixel kBlack{0, 0, 0, 255};
constexpr Pixel kOrange{255, 149, 0, 255};

TEST(PerceptualColorDistance, SpansTheLabScaleAndSeesAlpha) {
  const auto white = labFromSRGB(1, 1, 1);
  EXPECT_NEAR(white.lightness, 100, 0.01);
  EXPECT_NEAR(white.a, 0, 0.01);
  EXPECT_NEAR(white.b, 0, 0.01);
  EXPECT_EQ(perceptualDistance(kOrange, kOrange), 0);
  EXPECT_NEAR(perceptualDistance(kBlack, kWhite), 100, 0.01);
  EXPECT_EQ(perceptualDistance(kBlack, kWhite), perceptualDistance(kWhite, kBlack));
  // One step in one channel is below what an eye can tell.
  EXPECT_GT(perceptualDistance(kOrange, {254, 149, 0, 255}), 0);
  EXPECT_LT(perceptualDistance(kOrange, {254, 149, 0, 255}), 1);
  // The same colour half transparent is far from opaque; invisible pixels are all alike.
  EXPECT_GT(perceptualDistance(kOrange, {255, 149, 0, 128}), 20);
  EXPECT_EQ(perceptualDistance({0, 0, 0, 0}, {0, 0, 0, 0}), 0);
}

TEST(ImageComparison, CountsPixelsBeyondThePerceptualTolerance) {
  const auto reference = PixelImage(40, 25, kOrange);
  auto candidate = reference;
  candidate.at(3, 4) = kBlack;                // far off
  candidate.at(10, 10) = {254, 149, 0, 255};  // barely off
  const auto exact = compareImages(reference, candidate, 1.0);
  EXPECT_TRUE(exact.sameSize);
  EXPECT_EQ(exact.pixelCount, 1000u);
  EXPECT_EQ(exact.matchingCount, 998u);
  EXPECT_TRUE(exact.mismatched[4 * 40 + 3]);
  EXPECT_TRUE(exact.mismatched[10 * 40 + 10]);
  EXPECT_FALSE(exact.passes(1.0));
  EXPECT_TRUE(exact.passes(0.998));
  EXPECT_FALSE(exact.passes(0.999));
  const auto lenient = compareImages(reference, candidate, 0.98);
  EXPECT_EQ(lenient.matchingCount, 999u);
  // Mid grey lies about 53.6 ΔE from black: inside a tolerance of 60, outside one of 50.
  const Pixel grey{128, 128, 128, 255};
  EXPECT_EQ(compareImages(PixelImage(2, 2, kBlack), PixelImage(2, 2, grey), 0.4).matchingCount, 4u);
  EXPECT_EQ(compareImages(PixelImage(2, 2, kBlack), PixelImage(2, 2, grey), 0.5).matchingCount, 0u);
}

TEST(ImageComparison, PicturesOfAnotherSizeMatchNowhere) {
  const auto comparison = compareImages(PixelImage(10, 10, kWhite), PixelImage(10, 11, kWhite), 0.0);
  EXPECT_FALSE(comparison.sameSize);
  EXPECT_EQ(comparison.matchingShare(), 0);
  EXPECT_FALSE(comparison.passes(0));
  const auto empty = compareImages(PixelImage(), PixelImage(), 1.0);
  EXPECT_TRUE(empty.passes(1.0));
}

TEST(ImageComparison, TheDifferenceImageShowsReferenceNewAndMismatchesSideBySide) {
  const auto reference = PixelImage(6, 4, kWhite);
  auto candidate = reference;
  candidate.at(2, 1) = kBlack;
  const auto comparison = compareImages(reference, candidate, 1.0);
  const auto sheet = differenceImage(reference, candidate, comparison);
  ASSERT_GT(sheet.width, 3 * 6);
  EXPECT_EQ(sheet.height, 4);
  const int gap = (sheet.width - 3 * 6) / 2;
  EXPECT_EQ(sheet.at(2, 1), kWhite);
  EXPECT_EQ(sheet.at(6 + gap + 2, 1), kBlack);
  const Pixel magenta{255, 0, 255, 255};
  EXPECT_EQ(sheet.at(2 * (6 + gap) + 2, 1), magenta);
  EXPECT_NE(sheet.at(2 * (6 + gap) + 3, 1), magenta);
  // Sizes that differ: every pixel of the difference is marked.
  const auto bigger = PixelImage(7, 4, kWhite);
  const auto mismatch = differenceImage(reference, bigger, compareImages(reference, bigger, 1.0));
  EXPECT_EQ(mismatch.at(2 * (7 + gap) + 6, 3), magenta);
}

TEST(PixelImage, WhatIsNoPNGIsAnErrorNamingIt) {
  testing::TemporaryFolder folder;
  std::ofstream(folder.path() / "text.png") << "not a picture";
  EXPECT_THROW(readPNG(folder.path() / "text.png"), RenderError);
  EXPECT_THAT([&] { readPNG(folder.path() / "missing.png"); },
              ::testing::ThrowsMessage<RenderError>(::testing::HasSubstr("missing.png")));
  EXPECT_THROW(decodePNG({0x89, 'P', 'N', 'G'}), RenderError);
}

}  // namespace
}  // namespace quillan::render
