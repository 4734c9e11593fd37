#pragma once

#include <string>
#include <vector>

#include "dicom/tag.h"
#include "dicom/vr.h"

/// One line of dicom/registry.tsv.
struct RegistryLine {
  std::string tag_text;
  std::string keyword;
  std::string vr;
  std::string vm;

  vessa::Tag Tag() const { return vessa::Tag{static_cast<std::uint32_t>(std::stoul(tag_text, nullptr, 16))}; }
};

/// All lines of the file in its order, read once. Empty when the file cannot be read.
const std::vector<RegistryLine>& RegistryLines();
