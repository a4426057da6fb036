// ladderSvg.cpp - the picture of a call as SVG.
#include "output/ladderSvg.h"

#include <algorithm>
#include <vector>

namespace {

// In pixels.
constexpr std::size_t kMargin = 20;
constexpr std::size_t kLineHeight = 18;
constexpr std::size_t kStepHeight = 30;
constexpr std::size_t kTimeWidth = 90;
constexpr std::size_t kSpacing = 300;
constexpr std::size_t kSide = 170;     // beside the outer columns
constexpr std::size_t kCharacter = 8;  // wider than one of the fixed-width font
constexpr std::size_t kHead = 8;       // the length of the head of an arrow
constexpr std::size_t kLoop = 40;

std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result.append("&amp;");
        break;
      case '<':
        result.append("&lt;");
        break;
      case '>':
        result.append("&gt;");
        break;
      default:
        result.push_back(c);
    }
  }
  return result;
}

// Returns attributes, `name="number"` each.
std::string attribute(const std::string& name, std::size_t number) {
  return ' ' + name + "=\"" + std::to_string(number) + '"';
}

// Writes the elements, from the top down.
class Drawing {
 public:
  explicit Drawing(const Ladder& ladder)
      : ladder_(ladder), width_(at(ladder.columns().size() - 1) + kSide + kMargin) {
    addLines(ladder.heading());
    addNames();
    addColumns();
    for (const Ladder::Arrow& arrow : ladder.arrows()) {
      y_ += kStepHeight;
      add(arrow);
    }
    y_ += kStepHeight;
    addLines(ladder.legend());
  }

  std::string document() const {
    return "<svg xmlns=\"http://www.w3.org/2000/svg\"" + attribute("width", width_) +
           attribute("height", y_ + kMargin) +
           " font-family=\"monospace\" font-size=\"12\">\n"
           "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n" +
           elements_ + "</svg>\n";
  }

 private:
  static constexpr const char* kStroke = "stroke=\"black\"";

  std::size_t at(std::size_t column) const {
    return kMargin + (ladder_.timed() ? kTimeWidth : 0) + kSide + column * kSpacing;
  }

  void addLines(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
      y_ += kLineHeight;
      addText(kMargin, y_, "start", line);
      width_ = std::max(width_, kMargin + line.size() * kCharacter + kMargin);
    }
  }

  // Every other name is lower than the one before, as long ones need the room of two.
  void addNames() {
    y_ += 2 * kLineHeight;
    for (std::size_t column = 0; column < ladder_.columns().size(); ++column) {
      addText(at(column), y_ + column % 2 * kLineHeight, "middle", ladder_.columns()[column]);
    }
    y_ += 2 * kLineHeight;
  }

  void addColumns() {
    const std::size_t bottom = y_ + (ladder_.arrows().size() + 1) * kStepHeight - kLineHeight;
    for (std::size_t column = 0; column < ladder_.columns().size(); ++column) {
      addLine(at(column), y_ - kLineHeight / 2, at(column), bottom, "stroke=\"#999\"");
    }
  }

  void add(const Ladder::Arrow& arrow) {
    if (!arrow.after.empty()) {
      addText(kMargin + kTimeWidth, y_, "end", arrow.after);
    }
    if (arrow.step.again) {
      addText(kMargin, y_, "start", "*");
    }
    const std::string stroke =
        arrow.step.again ? std::string(kStroke) + " stroke-dasharray=\"2 4\"" : kStroke;
    const std::size_t from = at(arrow.from);
    const std::size_t to = at(arrow.to);
    if (arrow.from == arrow.to) {
      addLine(from, y_, from + kLoop, y_, stroke);
      addHead(from, true);
      addText(from + kLoop + kHead, y_, "start",
              labelOf(arrow.step, (kSide - kLoop - kHead) / kCharacter));
      return;
    }
    const std::size_t length = std::max(from, to) - std::min(from, to);
    addLine(from, y_, to, y_, stroke);
    addHead(to, to < from);
    addText((from + to) / 2, y_ - 4, "middle",
            labelOf(arrow.step, (length - 2 * kHead) / kCharacter));
  }

  void addText(std::size_t x, std::size_t y, const char* anchor, const std::string& text) {
    elements_ += "<text" + attribute("x", x) + attribute("y", y) + " text-anchor=\"" + anchor +
                 "\">" + escaped(text) + "</text>\n";
  }

  void addLine(std::size_t x1, std::size_t y1, std::size_t x2, std::size_t y2,
               const std::string& stroke) {
    elements_ += "<line" + attribute("x1", x1) + attribute("y1", y1) + attribute("x2", x2) +
                 attribute("y2", y2) + ' ' + stroke + "/>\n";
  }

  void addHead(std::size_t x, bool left) {
    const std::string back = std::to_string(left ? x + kHead : x - kHead);
    elements_ += "<path d=\"M" + std::to_string(x) + ' ' + std::to_string(y_) + " L" + back + ' ' +
                 std::to_string(y_ - 4) + " L" + back + ' ' + std::to_string(y_ + 4) + " Z\"/>\n";
  }

  const Ladder& ladder_;
  std::size_t width_;
  std::size_t y_ = kMargin;
  std::string elements_;
};

}  // namespace

std::string ladderSvg(const Ladder& ladder) { return Drawing(ladder).document(); }
