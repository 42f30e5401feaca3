#include <zephra/Palette/zplbZephraPalFile.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <limits>
#include <string_view>

#include <zephra/Common/zpNumberText.h>
#include <zephra/Common/private/zpTextReader.h>
#include <zephra/Common/private/zpTextOutputFile.h>

namespace zephra {

namespace {

constexpr const char* kIndexOutOfRange = "Index out of range";

// Red, green, blue on the 6-bit scale of the palette files.
constexpr std::array<std::array<uint8_t, 3>, 16> kBuiltInTable{{
    {63, 63, 63},
    {43, 62, 63},
    {0, 54, 54},
    {22, 47, 47},
    {12, 39, 30},
    {19, 49, 3},
    {0, 56, 0},
    {0, 63, 0},
    {63, 60, 0},
    {63, 50, 0},
    {63, 38, 10},
    {63, 38, 24},
    {63, 28, 0},
    {63, 0, 0},
    {40, 10, 19},
    {32, 0, 10},
}};

// The reader widens 6-bit values by slightly more than 4, so that 63 reaches 255.
constexpr float kReadScale = 4.048f;
constexpr int kLineLength = 12;
constexpr int kFieldWidth = 3;

constexpr TColor MakeColor(uint32_t red, uint32_t green, uint32_t blue) {
  return (red & 0xFF) | (green & 0xFF) << 8 | (blue & 0xFF) << 16;
}

constexpr uint32_t Channel(TColor color, int channel) {
  return (color >> (8 * channel)) & 0xFF;
}

// Rounds half to even and keeps the low 8 bits, so values beyond a byte wrap rather than fail.
uint32_t RoundToByte(double value) {
  return static_cast<uint32_t>(static_cast<int64_t>(std::nearbyint(value))) & 0xFF;
}

TColorArray BuiltInColors() {
  TColorArray colors;
  colors.reserve(kBuiltInTable.size());
  for (const auto& row : kBuiltInTable) {
    colors.push_back(MakeColor(row[0] * 4u, row[1] * 4u, row[2] * 4u));
  }
  return colors;
}

size_t CharacterCount(std::string_view text) {
  return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<uint8_t>(c) & 0xC0) != 0x80;  // every byte but UTF-8 continuations
  }));
}

// A line of exactly 12 characters whose last three columns of three hold integers gives their
// colour on the reader's scale; anything else is black. Lengths count characters, not bytes.
TColor ParseLine(std::string_view line) {
  constexpr size_t kChannelColumns = 3 * kFieldWidth;
  if (CharacterCount(line) != kLineLength) {
    return 0;
  }
  // A non-ASCII character in the colour columns makes its field no integer (and its bytes fail
  // the conversion too), so the columns are the last nine bytes whenever they convert at all.
  const std::string_view columns = line.substr(line.size() - kChannelColumns);
  std::array<int32_t, 3> values{};
  for (size_t k = 0; k < values.size(); ++k) {
    if (!TryParseInt(columns.substr(k * kFieldWidth, kFieldWidth), values[k])) {
      return 0;
    }
  }
  const auto scaled = [&](size_t k) { return RoundToByte(values[k] * double{kReadScale}); };
  return MakeColor(scaled(0), scaled(1), scaled(2));
}

// Appends value right-aligned in at least kFieldWidth columns, as "%3d" does.
void AppendField(std::string& line, const TNumberFormat& format, int64_t value) {
  char digits[TNumberFormat::MaxLength];
  const auto length = static_cast<size_t>(format.Integer(digits, value) - digits);
  if (length < kFieldWidth) {
    line.append(kFieldWidth - length, ' ');
  }
  line.append(digits, length);
}

std::string FormatLine(const TNumberFormat& format, int32_t index, TColor color) {
  std::string line;
  AppendField(line, format, index);
  for (int channel = 0; channel < 3; ++channel) {
    AppendField(line, format, Channel(color, channel) >> 2);
  }
  return line;
}

}  // namespace

TZephraPalFile::TZephraPalFile()
    : FColors(BuiltInColors()), FCount(static_cast<int32_t>(FColors.size())) {}

void TZephraPalFile::LoadFromFile(const std::string& FileName) {
  std::error_code ignored;
  if (!std::filesystem::exists(FileName, ignored) || FileName == FPaletteFile) {
    return;
  }
  FPaletteFile = FileName;
  TTextReader reader = TTextReader::FromFile(FileName);
  std::vector<std::string_view> lines;
  std::string_view line;
  while (reader.ReadLine(line)) {
    lines.push_back(line);
  }
  SetCount(static_cast<int32_t>(lines.size()));  // an empty file keeps the table
  for (size_t i = 0; i < lines.size(); ++i) {
    FColors[i] = ParseLine(lines[i]);
  }
}

void TZephraPalFile::SaveToFile(const std::string& FileName) const {
  if (FileName.empty()) {
    return;
  }
  // Integers carry no decimal separator, so the lines read the same in every locale.
  const TNumberFormat format;
  TTextOutputFile file(FileName, TOutputFile::omReplace);
  for (int32_t i = 0; i < FCount; ++i) {
    file.WriteLine(FormatLine(format, i, FColors[i]));
  }
  file.Commit();
}

void TZephraPalFile::SaveToFile(const std::string& FileName, bool UpdateFileName) {
  SaveToFile(FileName);
  if (UpdateFileName) {
    FPaletteFile = FileName;
  }
}

void TZephraPalFile::Blend(int32_t Index1, int32_t Index2) {
  // The run of writes starts at Index1 and goes upward; only Index1 from 0 up to Index2 keeps
  // it inside the table that the reads below make, so anything else is refused untouched.
  if (Index1 < 0 || Index1 > Index2) {
    throw EZephraPalette(kIndexOutOfRange);
  }
  const TColor c1 = GetColor(Index1);
  const TColor c2 = GetColor(Index2);
  const int64_t n = int64_t{Index2} - Index1 + 1;
  std::array<double, 3> step{};
  for (int channel = 0; channel < 3; ++channel) {
    step[channel] =
        (static_cast<double>(Channel(c2, channel)) - static_cast<double>(Channel(c1, channel))) /
        static_cast<double>(n);
  }
  // The divisor is n and the last i is n - 1, so the ramp ends one step short of c2.
  for (int64_t i = 0; i < n; ++i) {
    const auto ramp = [&](int channel) {
      return RoundToByte(Channel(c1, channel) + static_cast<double>(i) * step[channel]);
    };
    FColors[static_cast<size_t>(Index1 + i)] = MakeColor(ramp(0), ramp(1), ramp(2));
  }
}

TColor TZephraPalFile::GetColor(int32_t index) {
  if (index < 0) {
    return FColors[0];
  }
  if (index >= FCount) {
    // No table can count index + 1 entries for the largest index; that one read is refused.
    if (index == std::numeric_limits<int32_t>::max()) {
      throw EZephraPalette(kIndexOutOfRange);
    }
    SetCount(index + 1);
  }
  return FColors[static_cast<size_t>(index)];
}

void TZephraPalFile::SetColor(int32_t index, TColor color) {
  if (index < 0) {
    throw EZephraPalette(kIndexOutOfRange);
  }
  FColors[static_cast<size_t>(index % FCount)] = color;
}

void TZephraPalFile::FillPalette(TColor Color) {
  std::fill(FColors.begin(), FColors.end(), Color);
}

void TZephraPalFile::SetCount(int32_t nColors) {
  if (nColors == 0 || nColors == FCount) {
    return;
  }
  if (nColors < 0) {
    throw EListError("Palette count out of range: " + std::to_string(nColors));
  }
  const TColor last = FColors.back();
  FColors.resize(static_cast<size_t>(nColors), last);
  FCount = nColors;
}

}  // namespace zephra
