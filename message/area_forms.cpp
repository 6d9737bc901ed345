#include "message/area_forms.h"

#include "message/no_line_start.h"
#include "message/text_areas.h"
#include "platform/text/shift_jis.h"

namespace qv {

namespace {

constexpr int32_t ShiftJisCharset = 128, StyleStays = -1, FixedPitch = 1, VariablePitch = 2;
constexpr const char *PMincho = "ＭＳ Ｐ明朝", *PGothic = "ＭＳ Ｐゴシック",
                     *Gothic = "ＭＳ ゴシック";
constexpr ColourRef White = 0xFFFFFF, Black = 0;
constexpr int32_t TextColour = 0, OutlineColour = 1, LeftSide = 0;

constexpr FontForm NameFont{20, 600, 0, VariablePitch, PMincho},
    MessageFont{18, 500, 0, VariablePitch, PMincho}, TitleFont{30, 400, 0, VariablePitch, PMincho},
    HelpFont{12, 300, 0, FixedPitch, Gothic};

}  // namespace

const FontForm GothicLabelFont{10, 700, StyleStays, FixedPitch, PGothic},
    MinchoLabelFont{10, 700, StyleStays, FixedPitch, PMincho};

const AreaForm NameAreaForm{
    LineAreas::NameArea, 8, 24, 495, 24, 2, 2, 2, 24, 1281, NameFont, White, false,
    shortNoLineStart};
const AreaForm MessageAreaForm{
    LineAreas::MessageArea, 16, 48, 495, 72, 2, 2, 2, 20, 1024, MessageFont, White, false,
    longNoLineStart};
const AreaForm HelpAreaForm{"HelpAria", 8,  8, 300,      360,   0,    0,
                            0,          14, 0, HelpFont, Black, true, shortNoLineStart};
const AreaForm TitleAreaForms[3] = {
    {"select01.Title.Aria", 16, 31, 500, 80, 0, 2, 0, 36, 1025, TitleFont, White, false,
     longNoLineStart},
    {"select02.Title.Aria", 16, 20, 500, 80, 0, 2, 0, 36, 1025, TitleFont, White, false,
     longNoLineStart},
    {"select03.Title.Aria", 16, 20, 500, 80, 0, 2, 0, 36, 1025, TitleFont, White, false,
     longNoLineStart},
};

void shapeArea(QVPrintArea& area, const AreaForm& form) {
  area.setRect(form.left, form.top, form.width, form.height);
  area.setPosition(form.left + form.penX, form.top + form.penY);
  area.setIndent(form.indent, LeftSide);
  area.setLineHeight(form.lineHeight);
  area.setFlags(form.flags);
  area.setFont(form.font.height, form.font.weight, form.font.style, form.font.pitch,
               ShiftJisCharset, sjis(form.font.face).c_str());
  area.setColour(form.text, TextColour);
  if (!form.whiteOutlineStays) area.setColour(Black, OutlineColour);
  if (form.noLineStart) area.setNoLineStart(form.noLineStart().c_str());
}

}  // namespace qv
