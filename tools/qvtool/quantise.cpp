#include "tools/qvtool/quantise.h"

#include <algorithm>
#include <charconv>
#include <memory>
#include <span>

#include <libimagequant.h>

#include "graphics/static_colours.h"
#include "tools/failure.h"

namespace qv::tool {

namespace {

constexpr uint8_t OpaqueFrom = 128;
constexpr uint32_t KeyColour = 0xFF00FF;

struct Destroy {
  void operator()(liq_attr* object) const { liq_attr_destroy(object); }
  void operator()(liq_image* object) const { liq_image_destroy(object); }
  void operator()(liq_histogram* object) const { liq_histogram_destroy(object); }
  void operator()(liq_result* object) const { liq_result_destroy(object); }
};
template <class Type>
using Held = std::unique_ptr<Type, Destroy>;

void require(bool well, const char* what) {
  if (!well) throw Failure(std::string("The colours cannot be chosen: ") + what + ".");
}

liq_color colourOf(uint32_t rgb) {
  return {static_cast<unsigned char>(rgb >> 16), static_cast<unsigned char>(rgb >> 8),
          static_cast<unsigned char>(rgb), 255};
}

uint32_t rgbOf(const liq_color& colour) {
  return static_cast<uint32_t>(colour.r) << 16 | static_cast<uint32_t>(colour.g) << 8 | colour.b;
}

bool inRange(const EntryRange& range, int entry) {
  return entry >= range.first && entry <= range.last;
}

std::optional<int> numberOf(std::string_view text, int base = 10) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

/// Which entries have a colour before any is chosen: static ones and the author's.
struct FixedEntries {
  codec::IndexedPicture table;  ///< its colours and marks alone
  std::vector<int> entries;     ///< those that opaque pixels may use
  std::vector<int> slots;       ///< of the range, for chosen colours
};

FixedEntries fixedEntries(const QuantiseWishes& wishes) {
  FixedEntries fixed;
  fixed.table.marks.fill(codec::IndexedPicture::Free);
  const auto setEntry = [&](int entry, uint32_t colour) {
    fixed.table.colours[static_cast<size_t>(entry)] = colour;
    fixed.table.marks[static_cast<size_t>(entry)] = codec::IndexedPicture::Used;
    const bool allowed = wishes.statics || !isStaticColour(static_cast<size_t>(entry));
    if (entry != wishes.key && allowed) fixed.entries.push_back(entry);
  };
  constexpr auto Standard = greyRampWithStaticColours();
  for (size_t entry = 0; entry < 256; ++entry)
    if (isStaticColour(entry)) setEntry(static_cast<int>(entry), Standard[entry]);
  for (const FixedColour& wish : wishes.fixed) {
    if (!inRange(wishes.entries, wish.entry))
      throw Failure("The fixed entry " + std::to_string(wish.entry) + " is not in the range " +
                    std::to_string(wishes.entries.first) + "-" +
                    std::to_string(wishes.entries.last) + ".");
    if (wish.entry == wishes.key)
      throw Failure("Entry " + std::to_string(wish.entry) + " cannot be key and colour at once.");
    setEntry(wish.entry, wish.colour);
  }
  if (wishes.key && !isStaticColour(static_cast<size_t>(*wishes.key)))
    setEntry(*wishes.key, KeyColour);
  for (int entry = wishes.entries.first; entry <= wishes.entries.last && !wishes.onlyFixed; ++entry)
    if (fixed.table.marks[static_cast<size_t>(entry)] == codec::IndexedPicture::Free)
      fixed.slots.push_back(entry);
  return fixed;
}

/// How often each opaque colour stands in the pictures.
std::vector<liq_histogram_entry> opaqueColours(std::span<const Image> images) {
  std::vector<uint32_t> colours;
  for (const Image& image : images)
    for (size_t at = 0; at < image.rgba.size(); at += 4)
      if (image.rgba[at + 3] >= OpaqueFrom)
        colours.push_back(static_cast<uint32_t>(image.rgba[at]) << 16 |
                          static_cast<uint32_t>(image.rgba[at + 1]) << 8 | image.rgba[at + 2]);
  std::sort(colours.begin(), colours.end());
  std::vector<liq_histogram_entry> counted;
  for (const uint32_t colour : colours) {
    if (counted.empty() || rgbOf(counted.back().color) != colour)
      counted.push_back({colourOf(colour), 0});
    ++counted.back().count;
  }
  return counted;
}

/// The index of a chosen colour in the picture's table; a new one takes the next free slot.
std::array<uint8_t, 256> placeColours(const liq_palette& palette, FixedEntries& fixed) {
  std::array<uint8_t, 256> places{};
  size_t nextSlot = 0;
  std::vector<int> waiting = fixed.entries;
  // The quantiser puts its fixed colours last; a chosen one that equals them must not take theirs.
  for (size_t index = palette.count; index-- > 0;) {
    const uint32_t colour = rgbOf(palette.entries[index]);
    const auto sameColour = [&](int entry) {
      return fixed.table.colours[static_cast<size_t>(entry)] == colour;
    };
    const auto found = std::find_if(waiting.begin(), waiting.end(), sameColour);
    const auto any = std::find_if(fixed.entries.begin(), fixed.entries.end(), sameColour);
    int entry = 0;
    if (found != waiting.end()) {
      entry = *found;
      waiting.erase(found);
    } else if (any != fixed.entries.end()) {
      entry = *any;
    } else {
      require(nextSlot < fixed.slots.size(), "more colours than entries came back");
      entry = fixed.slots[nextSlot++];
      fixed.table.colours[static_cast<size_t>(entry)] = colour;
      fixed.table.marks[static_cast<size_t>(entry)] = codec::IndexedPicture::Used;
    }
    places[index] = static_cast<uint8_t>(entry);
  }
  return places;
}

/// Transparent pixels get a fixed colour, so that dithering carries no error out of them.
std::vector<uint8_t> opaqueCopy(const Image& image, uint32_t filler) {
  std::vector<uint8_t> rgba = image.rgba;
  for (size_t at = 0; at < rgba.size(); at += 4) {
    if (rgba[at + 3] < OpaqueFrom) {
      const liq_color colour = colourOf(filler);
      rgba[at] = colour.r, rgba[at + 1] = colour.g, rgba[at + 2] = colour.b;
    }
    rgba[at + 3] = 255;
  }
  return rgba;
}

void applyKey(const Image& image, const QuantiseWishes& wishes, codec::IndexedPicture& picture,
              std::vector<std::string>& warnings) {
  size_t transparent = 0;
  for (size_t at = 0; at < picture.pixels.size(); ++at) {
    if (image.rgba[at * 4 + 3] >= OpaqueFrom) continue;
    ++transparent;
    if (wishes.key) picture.pixels[at] = static_cast<uint8_t>(*wishes.key);
  }
  if (!wishes.key) {
    if (transparent)
      warnings.push_back(std::to_string(transparent) +
                         " transparent pixels became black; --key-transparent keeps them.");
    return;
  }
  if (!transparent) warnings.emplace_back("The picture has no transparent pixel.");
  if (picture.pixels.front() != *wishes.key) {
    picture.pixels.front() = static_cast<uint8_t>(*wishes.key);
    warnings.emplace_back("The top left pixel was not transparent; it is now.");
  }
}

void checkKey(const QuantiseWishes& wishes) {
  if (wishes.key && !inRange(wishes.entries, *wishes.key) &&
      (*wishes.key < 0 || *wishes.key > 255 || !isStaticColour(static_cast<size_t>(*wishes.key))))
    throw Failure("The key " + std::to_string(*wishes.key) +
                  " is neither one of the picture's entries nor a static colour.");
}

/// The quantiser's choice for all the pictures at once, and the attributes that it was made with.
struct Choice {
  Held<liq_attr> attributes;
  Held<liq_result> result;
};

Choice choose(std::span<const Image> images, const FixedEntries& fixed) {
  std::vector<liq_histogram_entry> colours = opaqueColours(images);
  // The quantiser wants something to choose from, even where nothing is opaque.
  if (colours.empty() && fixed.entries.empty()) colours.push_back({colourOf(KeyColour), 1});

  Choice choice{Held<liq_attr>(liq_attr_create()), nullptr};
  liq_attr* const attributes = choice.attributes.get();
  require(attributes != nullptr, "there is no memory");
  const size_t most = fixed.entries.size() + fixed.slots.size();
  require(liq_set_max_colors(attributes, static_cast<int>(std::max<size_t>(most, 2))) == LIQ_OK,
          "the number of entries was refused");
  liq_set_speed(attributes, 3);
  const Held<liq_histogram> histogram(liq_histogram_create(attributes));
  if (!colours.empty())
    require(liq_histogram_add_colors(histogram.get(), attributes, colours.data(),
                                     static_cast<int>(colours.size()), 0) == LIQ_OK,
            "the picture was refused");
  for (const int entry : fixed.entries)
    require(liq_histogram_add_fixed_color(histogram.get(),
                                          colourOf(fixed.table.colours[static_cast<size_t>(entry)]),
                                          0) == LIQ_OK,
            "a fixed colour was refused");
  liq_result* chosen = nullptr;
  require(liq_histogram_quantize(histogram.get(), attributes, &chosen) == LIQ_OK,
          "the quantiser failed");
  choice.result.reset(chosen);
  return choice;
}

}  // namespace

EntryRange parseEntries(const std::string& text) {
  const size_t dash = text.find('-');
  const std::string_view view = text;
  const std::optional<int> first = numberOf(view.substr(0, dash));
  const std::optional<int> last =
      dash == std::string::npos ? first : numberOf(view.substr(dash + 1));
  if (!first || !last || *first > *last || *first < 0 || *last > 255)
    throw Failure("\"" + text + "\" is no range of entries; write 10-127.");
  if (isStaticColour(static_cast<size_t>(*first)) || isStaticColour(static_cast<size_t>(*last)))
    throw Failure("The entries " + text + " reach into the static colours; 10 to 245 are free.");
  return {*first, *last};
}

FixedColour parseFixedColour(const std::string& text) {
  const size_t equal = text.find('=');
  const std::string_view view = text;
  std::optional<int> entry, colour;
  if (equal != std::string::npos && view.size() == equal + 8 && view[equal + 1] == '#') {
    entry = numberOf(view.substr(0, equal));
    colour = numberOf(view.substr(equal + 2), 16);
  }
  if (!entry || !colour || *colour < 0)
    throw Failure("\"" + text + "\" is no fixed colour; write 42=#FF8000.");
  return {*entry, static_cast<uint32_t>(*colour)};
}

codec::IndexedPicture quantise(const Image& image, const QuantiseWishes& wishes,
                               std::vector<std::string>& warnings) {
  checkKey(wishes);
  FixedEntries fixed = fixedEntries(wishes);
  const Choice choice = choose({&image, 1}, fixed);
  liq_result* const result = choice.result.get();
  liq_set_dithering_level(result, static_cast<float>(wishes.dither));

  const uint32_t filler = rgbOf(liq_get_palette(result)->entries[0]);
  const std::vector<uint8_t> rgba = opaqueCopy(image, filler);
  const Held<liq_image> source(
      liq_image_create_rgba(choice.attributes.get(), rgba.data(), image.width, image.height, 0));
  require(source != nullptr, "the picture was refused");
  codec::IndexedPicture picture;
  picture.pixels.resize(static_cast<size_t>(image.width) * static_cast<size_t>(image.height));
  require(liq_write_remapped_image(result, source.get(), picture.pixels.data(),
                                   picture.pixels.size()) == LIQ_OK,
          "the picture could not be mapped");

  // Mapping refines the colours once more: only now are they final.
  const std::array<uint8_t, 256> places = placeColours(*liq_get_palette(result), fixed);
  for (uint8_t& pixel : picture.pixels)
    pixel = places[pixel];
  picture.width = image.width;
  picture.height = image.height;
  picture.colours = fixed.table.colours;
  picture.marks = fixed.table.marks;
  applyKey(image, wishes, picture, warnings);
  return picture;
}

QuantiseWishes commonColours(const std::vector<Image>& images, const QuantiseWishes& wishes) {
  checkKey(wishes);
  FixedEntries fixed = fixedEntries(wishes);
  const Choice choice = choose(images, fixed);
  placeColours(*liq_get_palette(choice.result.get()), fixed);
  QuantiseWishes common = wishes;
  common.onlyFixed = true;
  common.fixed.clear();
  for (int entry = wishes.entries.first; entry <= wishes.entries.last; ++entry)
    if (entry != wishes.key &&
        fixed.table.marks[static_cast<size_t>(entry)] == codec::IndexedPicture::Used)
      common.fixed.push_back({entry, fixed.table.colours[static_cast<size_t>(entry)]});
  return common;
}

codec::IndexedPicture keepIndices(const codec::IndexedPicture& picture) {
  codec::IndexedPicture kept = picture;
  constexpr auto Standard = greyRampWithStaticColours();
  for (size_t entry = 0; entry < 256; ++entry) {
    if (!isStaticColour(entry)) continue;
    if (picture.marks[entry] == codec::IndexedPicture::Used &&
        picture.colours[entry] != Standard[entry])
      throw Failure("Its pixels use entry " + std::to_string(entry) +
                    ", which is a static colour, for another one; give --entries to choose its "
                    "colours anew.");
    kept.colours[entry] = Standard[entry];
    kept.marks[entry] = codec::IndexedPicture::Used;
  }
  return kept;
}

}  // namespace qv::tool
