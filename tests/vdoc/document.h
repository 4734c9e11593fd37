#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "decompose/content_handler_interface.h"

// A data set as the tests write it down: what a handler hears of it, and its bytes.

struct Element;
using Item = std::vector<Element>;

struct Element {
  std::uint32_t tag = 0;
  std::string vr;
  std::string value;
  std::vector<Item> items;             // of a sequence
  std::vector<std::string> fragments;  // of encapsulated pixel data
};

inline Element Text(std::uint32_t tag, std::string vr, std::string value) {
  return {tag, std::move(vr), std::move(value), {}, {}};
}
inline Element Sequence(std::uint32_t tag, std::vector<Item> items) {
  return {tag, "SQ", "", std::move(items), {}};
}
inline Element PixelFragments(std::vector<std::string> fragments) {
  return {0x7FE00010, "OB", "", {}, std::move(fragments)};
}

enum class Ended { kAtTheEnd, kBySuccess };

enum class Unwanted { kSent, kPassedOver };

/// Sends the events of the data set to the handler, values in chunks of at most 32648 bytes, until it throws
/// its success.
/// @param unwanted  what becomes of values that the handler does not want
Ended Play(const Item& data_set, vessa::CContentHandlerInterface& handler,
           Unwanted unwanted = Unwanted::kSent);

enum class Lengths { kDefined, kUndefined };

/// The data set in explicit VR little endian, its sequences and items of defined or undefined length.
std::string Encode(const Item& data_set, Lengths lengths);
