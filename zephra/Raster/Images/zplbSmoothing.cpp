#include <zephra/Raster/Images/zplbSmoothing.h>

#include <zephra/Common/zpNumberText.h>

namespace zephra {

std::string TSmoothingIndexList::ToString() const {
  if (empty()) {
    return "None";
  }
  const TNumberFormat format;
  std::string text;
  char number[TNumberFormat::MaxLength];
  for (const TSmoothingIndex& entry : *this) {
    if (!text.empty()) {
      text += ", ";
    }
    text += "(col:";
    text += std::to_string(entry.Col);
    text += ", row:";
    text += std::to_string(entry.Row);
    text += ", value: ";
    text.append(number, format.Fixed(number, entry.Value, 2));
    text += ')';
  }
  return text;
}

}  // namespace zephra
