#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "backend/Painter.h"

namespace host {

/// A text whose lines are found here and whose words the browser measures and draws. In device pixels inside. UI thread
/// only.
class CanvasText final : public TextLayout {
public:
    CanvasText(std::string_view utf8, const TextStyle& style, double scale);

    [[nodiscard]] SizeF Measure() const override;
    [[nodiscard]] bool IsEllipsized() const override { return isEllipsized_; }

    struct Line {
        std::string text;
        double width = 0;
        double indent = 0;  ///< from the left of the widest line
    };
    [[nodiscard]] const std::vector<Line>& Lines() const noexcept { return lines_; }
    [[nodiscard]] double FontSize() const noexcept { return fontSize_; }
    [[nodiscard]] bool IsBold() const noexcept { return isBold_; }
    /// From a line's top to its baseline.
    [[nodiscard]] double Ascent() const noexcept { return ascent_; }
    [[nodiscard]] double LineHeight() const noexcept { return lineHeight_; }

private:
    enum class Ranges { kKept, kBroken };

    [[nodiscard]] double WidthOf(std::string_view text) const;
    void BreakLines(std::string_view text, double width, Ranges unbreakable);
    void AddLine(std::string_view text);
    void Ellipsize(Line& line, double width);

    double fontSize_;
    bool isBold_;
    double scale_;
    double maxWidth_;  ///< in the surface's units; 0: none
    double ascent_ = 0;
    double lineHeight_ = 0;
    double widest_ = 0;
    std::vector<Line> lines_;
    bool isEllipsized_ = false;
};

}  // namespace host
