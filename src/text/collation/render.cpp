/// Order words made readable: as phrases, and as characters near them.

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "text/collation/orders.h"

namespace {

constexpr unsigned char kNoCharacter = 0x07;  // stands for all that can't be rendered
constexpr unsigned char kOpaque = 0x7f;       // an ideograph, or beyond the alphabets
constexpr unsigned short kUndefinedOrder = 0x0d;

struct Symbol {
  unsigned char number;
  unsigned char character;
  const char* phrase;  // null: the character itself
};

constexpr Symbol kSymbols[] = {
    {0x20, '_', nullptr},
    {0x22, '.', "macron sign"},
    {0x23, '.', "soft hyphen"},
    {0x24, '-', nullptr},
    {0x25, ',', nullptr},
    {0x26, ';', nullptr},
    {0x27, ':', nullptr},
    {0x28, '!', nullptr},
    {0x29, '.', "inverted exclamation mark"},
    {0x2a, '?', nullptr},
    {0x2c, '/', "solidus"},
    {0x2e, '.', "full stop"},
    {0x31, '.', "middle dot"},
    {0x32, '.', "cedilla"},
    {0x34, '\'', "apostrophe"},
    {0x37, '"', nullptr},
    {0x3a, '.', "left pointing double angle quotation mark"},
    {0x3b, '.', "right pointing double angle quotation mark"},
    {0x3c, '(', nullptr},
    {0x3e, ')', nullptr},
    {0x40, '[', nullptr},
    {0x41, ']', nullptr},
    {0x42, '{', nullptr},
    {0x43, '}', nullptr},
    {0x44, '.', "section sign"},
    {0x45, '.', "pilcrow sign"},
    {0x46, '.', "copyright sign"},
    {0x47, '.', "registered sign"},
    {0x49, '@', nullptr},
    {0x4a, '.', "currency sign"},
    {0x4b, '.', "cent sign"},
    {0x4c, '$', nullptr},
    {0x4d, '.', "pound sign"},
    {0x4e, '.', "yen sign"},
    {0x4f, '*', nullptr},
    {0x50, '.', "reverse solidus"},
    {0x51, '&', nullptr},
    {0x52, '#', nullptr},
    {0x53, '%', nullptr},
    {0x55, '+', nullptr},
    {0x57, '.', "plus minus sign"},
    {0x58, '\'', nullptr},
    {0x59, '`', nullptr},
    {0x5b, '^', nullptr},
    {0x5e, '.', "diaeresis"},
    {0x60, '~', nullptr},
    {0x62, '.', "division sign"},
    {0x63, '.', "multiplication sign"},
    {0x65, '<', nullptr},
    {0x67, '=', nullptr},
    {0x69, '>', nullptr},
    {0x6a, '.', "not sign"},
    {0x6b, '|', nullptr},
    {0x6c, '.', "broken bar"},
    {0x6d, '.', "degree sign"},
    {0x6e, '.', "micron sign"},
    {0x8b, '.', "inverted question mark"},
};

constexpr const char* kAccents[] = {"",
                                    "cedilla",
                                    "accent acute",
                                    "accent grave",
                                    "accent circumflex",
                                    "tilde",
                                    "diaeresis",
                                    "ring above",
                                    "stroke",
                                    "accent caron",
                                    "accent macron",
                                    "accent breve",
                                    "dot above",
                                    "ogonek",
                                    "accent double acute"};

constexpr unsigned char kFirstNamed = 0xc0;
/// Letters of the base code set from 0xc0 on; the bytes below, and two signs among them, have no
/// name.
constexpr const char* kByteNames[] = {
    "\\`A", "\\'A", "\\^A", "\\~A",  "\\\"A", "\\AA", "\\AE",  "\\,C",   //
    "\\`E", "\\'E", "\\^E", "\\\"E", "\\`I",  "\\'I", "\\^I",  "\\\"I",  //
    "\\-D", "\\~N", "\\`O", "\\'O",  "\\^O",  "\\~O", "\\\"O", "",       //
    "\\-O", "\\`U", "\\'U", "\\^U",  "\\\"U", "\\'Y", "\\TH",  "\\ss",   //
    "\\`a", "\\'a", "\\^a", "\\~a",  "\\\"a", "\\aa", "\\ae",  "\\,c",   //
    "\\`e", "\\'e", "\\^e", "\\\"e", "\\`i",  "\\'i", "\\^i",  "\\\"i",  //
    "\\-d", "\\~n", "\\`o", "\\'o",  "\\^o",  "\\~o", "\\\"o", "",       //
    "\\-o", "\\`u", "\\'u", "\\^u",  "\\\"u", "\\'y", "\\th",  "\\\"y"};
static_assert(std::size(kByteNames) == 0x100 - kFirstNamed);

const Symbol* FindSymbol(unsigned short order) {
  unsigned short number = 0;
  if (OtExtractSymbolFromOrder(order, number) != 0) return nullptr;
  const auto* symbol =
      std::find_if(std::begin(kSymbols), std::end(kSymbols),
                   [number](const Symbol& candidate) { return candidate.number == number; });
  return symbol != std::end(kSymbols) ? symbol : nullptr;
}

bool IsOpaque(unsigned short order, unsigned char script) {
  return order >= ot95::kFirstHan || (script & ~ot95::kMixedScripts) >= ot95::kBeyondAlphabets;
}

struct Letter {
  explicit Letter(unsigned short order) {
    OtExtractLetterFromOrder(order, caseField, accent, number, extension);
  }
  /// The plain letter: of the ASCII ones in the alphabets that have them.
  unsigned char Character() const {
    return static_cast<unsigned char>(number + 0x3e + (caseField != 0 ? 0x20 : 0));
  }
  unsigned short caseField;
  unsigned short accent;
  unsigned short number;
  unsigned short extension;
};

void DescribeSymbol(unsigned short order, OtString& text) {
  text = "symbol ";
  const Symbol* symbol = FindSymbol(order);
  if (symbol == nullptr) return;
  if (symbol->phrase != nullptr) {
    text << symbol->phrase;
  } else {
    text << static_cast<char>(symbol->character);
  }
}

void DescribeDigit(unsigned short order, OtString& text) {
  unsigned short digit = 0;
  unsigned short expand = 0;
  OtExtractDigitFromOrder(order, digit, expand);
  text = "digit ";
  text << static_cast<int>(digit);
  if (expand != 0) text << " with expand";
}

void DescribeLetter(unsigned short order, OtString& text) {
  const Letter letter(order);
  text = letter.caseField != 0 ? "lower " : "upper ";
  text << "letter " << static_cast<char>(letter.Character());
  if (letter.accent != 0) {
    text << " with ";
    if (letter.accent < std::size(kAccents)) text << kAccents[letter.accent];
  }
  if (letter.extension != 0) text << " with extension";
}

/// The first byte of the upper half that has exactly this order; 0 for none.
unsigned char FindAccented(unsigned short order) {
  for (unsigned byte = 0x80; byte < 0x100; ++byte) {
    if (ot95::OrderOfUnit(static_cast<unsigned short>(byte), OT_CS_BASE8) == order) {
      return static_cast<unsigned char>(byte);
    }
  }
  return 0;
}

const char* NameOfByte(unsigned char byte) {
  return byte < kFirstNamed ? "" : kByteNames[byte - kFirstNamed];
}

}  // namespace

int OtConvertOrderToString(unsigned short order, unsigned char script, OtString& text) {
  if (IsOpaque(order, script)) {
    char phrase[32];
    std::snprintf(phrase, sizeof phrase, "HAN character 0x%04x\n", unsigned{order});
    text = phrase;
  } else if (order < ot95::kFirstSymbol) {
    text = order == kUndefinedOrder ? "undefined ordering indicator" : "space";
  } else if (order < ot95::kFirstDigit) {
    DescribeSymbol(order, text);
  } else if (order < ot95::kFirstLetter) {
    DescribeDigit(order, text);
  } else {
    DescribeLetter(order, text);
  }
  return 0;
}

int OtConvertOrderToChar(unsigned short order, unsigned char script, unsigned char& character,
                         int searchAccented, const char** name) {
  if (IsOpaque(order, script)) {
    character = kOpaque;
  } else if (order < ot95::kFirstSymbol) {
    character = ' ';
  } else if (order < ot95::kFirstDigit) {
    const Symbol* symbol = FindSymbol(order);
    character = symbol != nullptr ? symbol->character : kNoCharacter;
  } else if (order < ot95::kFirstLetter) {
    unsigned short digit = 0;
    unsigned short expand = 0;
    OtExtractDigitFromOrder(order, digit, expand);
    character = static_cast<unsigned char>('0' + digit);
  } else {
    const Letter letter(order);
    character = letter.Character();
    const unsigned char accented =
        letter.accent != 0 && searchAccented != 0 ? FindAccented(order) : 0;
    if (accented != 0) {
      character = accented;
      if (name != nullptr) *name = NameOfByte(accented);
    }
  }
  return 0;
}
