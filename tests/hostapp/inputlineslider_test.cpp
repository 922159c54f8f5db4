// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/ui/inputlineslider.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QSlider>

#include <cmath>
#include <vector>

namespace {

struct Resolution
{
    float min, max;
    int decimals;
    float scale;
    int steps;            // slider positions past the first
    float valueAtQuarter; // the value a quarter of the way along
    const char *shownAtQuarter;
};

// The values a slider emitted with valueEdited.
struct Edits
{
    explicit Edits(InputLineSlider &slider)
    {
        QObject::connect(&slider, &InputLineSlider::valueEdited, &slider, [this](float value) {
            values.push_back(value);
        });
    }
    std::vector<float> values;
};

} // namespace

TEST(InputLineSliderTest, TheSliderMovesInStepsOfTheLastShownDigit)
{
    const Resolution cases[] = {
        {-180, 180, 1, 1, 3600, -90, "-90.0"},
        {1, 89, 1, 1, 880, 23, "23.0"},
        {-5, 5, 1, 1, 100, -2.5f, "-2.5"},
        {-100, 100, 2, 1, 20000, -50, "-50.00"},
        {1, 30, 0, 1, 29, 8, "8"}, // 29 * 0.25 rounds to position 7
        {0, 1, 0, 100, 100, 0.25f, "25"},
        {0, 1, 1, 100, 1000, 0.25f, "25.0"},
        {0, 1e6f, 3, 1, 100000, 250000, "250000.000"}, // a billion digits' worth is capped
    };
    for (const Resolution &c : cases) {
        InputLineSlider slider(c.min, c.max, c.decimals, c.scale);
        SCOPED_TRACE(testing::Message() << c.min << ".." << c.max << " decimals " << c.decimals);
        EXPECT_EQ(slider.slider()->maximum() - slider.slider()->minimum(), c.steps);
        Edits edits(slider);
        std::vector<float> &edited = edits.values;
        slider.slider()->setValue(int(std::lround(c.steps / 4.0)));
        ASSERT_EQ(edited.size(), 1);
        EXPECT_NEAR(edited.front(), c.valueAtQuarter, 1e-4 * (c.max - c.min));
        EXPECT_NEAR(slider.getValue(), c.valueAtQuarter, 1e-4 * (c.max - c.min));
        EXPECT_EQ(slider.field()->text(), QLatin1String(c.shownAtQuarter));
    }
}

TEST(InputLineSliderTest, SetValueModesShowAndSignalAsDocumented)
{
    InputLineSlider slider(-5, 5, 1, 1, QStringLiteral("\u00b0"));
    Edits edits(slider);
    std::vector<float> &edited = edits.values;

    slider.SetValue(InputLineSlider::ShowAsGiven, 12.25f);
    EXPECT_FLOAT_EQ(slider.getValue(), 12.25f);
    EXPECT_EQ(slider.field()->text(), QStringLiteral("12.3\u00b0")) << "shown as given, rounded";
    EXPECT_EQ(slider.slider()->value(), slider.slider()->maximum()) << "the slider at its end";
    slider.SetValue(InputLineSlider::ShowLimited, -12);
    EXPECT_FLOAT_EQ(slider.getValue(), -5);
    EXPECT_EQ(slider.slider()->value(), slider.slider()->minimum());
    slider.SetValue(InputLineSlider::ShowAsGiven, -0.01f);
    EXPECT_EQ(slider.field()->text(), QStringLiteral("0.0\u00b0")) << "no negative zero";
    EXPECT_TRUE(edited.empty()) << "showing is not editing";

    slider.SetValue(InputLineSlider::EditAsUser, 2);
    ASSERT_EQ(edited.size(), 1);
    EXPECT_FLOAT_EQ(edited.front(), 2);

    // Typing: the suffix and a decimal comma are accepted; leaving an untouched field is not an
    // edit; text that is no number puts the shown value back.
    slider.field()->setText(QStringLiteral("3,5\u00b0"));
    slider.field()->setModified(true);
    emit slider.field()->editingFinished();
    ASSERT_EQ(edited.size(), 2);
    EXPECT_FLOAT_EQ(edited.back(), 3.5f);
    emit slider.field()->editingFinished();
    EXPECT_EQ(edited.size(), 2);
    slider.field()->setText(QStringLiteral("abc"));
    slider.field()->setModified(true);
    emit slider.field()->editingFinished();
    EXPECT_EQ(edited.size(), 2);
    EXPECT_EQ(slider.field()->text(), QStringLiteral("3.5\u00b0"));
    EXPECT_FLOAT_EQ(slider.getValue(), 3.5f);
}
