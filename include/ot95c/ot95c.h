#ifndef OT95C_OT95C_H
#define OT95C_OT95C_H

/**
 * @file
 * The type manager for C, and for every language that can call C.
 *
 * A value is bytes as a database stores them: an array of one type in one form (`ot95_array`).
 * Texts go in and out as UTF-8, numbers, dates, identifiers and blobs also as C values
 * (`ot95_value`).
 * @code
 *   unsigned char page[64];
 *   ot95_buffer out = {page, sizeof page, 0};
 *   ot95_span texts[2] = {{"Orleans", 7}, {"Tours", 5}};
 *   int type, sign;
 *   ot95_type_by_name("OtString", &type);
 *   ot95_scan(type, texts, 2, NULL, OT95_FORM_BIG_ENDIAN, &out);
 *   ot95_array both = {type, OT95_FORM_BIG_ENDIAN, page, out.size, 2};
 *   ot95_compare(&both, &both, OT95_IGNORE_CASE, &sign);
 * @endcode
 *
 * - A function returns 0, or a negative status (see ot95_strerror) and then leaves its results as
 *   they were, unless it says otherwise; what a buffer held may be lost. None throws or ends the
 *   process.
 * - Bytes that are read are checked first; they may come from anywhere.
 * - Results go to memory of the caller. What is allocated for one belongs to the caller and goes
 *   back through ot95_free.
 * - All may be called from many threads at once. There is nothing to set up.
 * - `size` is in bytes, everywhere; texts need no terminator, but for the `const char*` ones.
 * - Structures whose first member is `struct_size` want their own `sizeof` there: they may grow,
 * and a library fills in only what its caller has room for.
 */

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define OT95C_EXPORT __attribute__((visibility("default")))

/** The number of this interface; it rises when something is added. See ot95_version. */
#define OT95C_INTERFACE 1

/** @name Statuses
 * @{ */
enum {
  OT95_OK = 0,
  OT95_ERR_ARGUMENT = -1, /**< An argument has no meaning here: a null pointer, a count of 0. */
  OT95_ERR_TYPE = -2,     /**< There is no such type. */
  OT95_ERR_LANGUAGE = -3, /**< There is no such language or code set. */
  OT95_ERR_ENDS = -4,     /**< The bytes end before the values do. */
  OT95_ERR_DAMAGED = -5,  /**< The bytes can't be such values. */
  OT95_ERR_ROOM = -6,     /**< The buffer is too small; its `size` says what is needed. */
  OT95_ERR_TEXT = -7,     /**< Not UTF-8, or a zero in it, or over 32,765 16-bit units. */
  OT95_ERR_VALUE = -8,    /**< The type or code set can't hold the value. */
  OT95_ERR_NOT_SUPPORTED = -9, /**< The type doesn't offer it, or the values have no order. */
  OT95_ERR_MEMORY = -10,       /**< Memory is short. */
  OT95_ERR_INTERNAL = -11      /**< A fault of the library. */
};

/** What a status means, in English. Never null; the text belongs to the library. */
OT95C_EXPORT const char* ot95_strerror(int status);
/** Gives back what a function of this header allocated; null is allowed. */
OT95C_EXPORT void ot95_free(void* block);
/** @} */

/** @name Buffers, texts, arrays
 * @{ */

/** A place for a result. */
typedef struct ot95_buffer {
  void* data;  /**< May be null if `room` is 0: to ask for the size. */
  size_t room; /**< Bytes at `data`. */
  size_t size; /**< Out, also with OT95_ERR_ROOM: what the result takes. A text has a terminator
                    behind these bytes where there is room for one. */
} ot95_buffer;

/** A text in UTF-8, or a run of any bytes. */
typedef struct ot95_span {
  const char* data;
  size_t size;
} ot95_span;

/** Forms of stored values. Bits from 0x10 up are flags of texts, see docs/stored-forms.md. */
enum {
  OT95_FORM_NATIVE = 1,     /**< Scalars as the machine has them. */
  OT95_FORM_BIG_ENDIAN = 2, /**< Most significant byte first. */
  OT95_FORM_KEY = 0x80      /**< Flag: texts as order words, for an index. */
};

/** In a type, beside its number: as databases before format 4 had it. That differs for texts. */
#define OT95_OLD_TABLE 0x100

/** Stored values. */
typedef struct ot95_array {
  int type;          /**< The identifier. */
  unsigned form;     /**< OT95_FORM_NATIVE, OT95_FORM_BIG_ENDIAN, with flags. */
  const void* bytes; /**< Need not be aligned. */
  size_t size;       /**< Bytes at hand; none behind them is read, some may be left over. */
  size_t count;      /**< Elements, at least 1. */
} ot95_array;
/** @} */

/** @name Versions
 * @{ */
typedef struct ot95_versions {
  size_t struct_size;
  unsigned library[5];       /**< As in 9.5.26.340.0. */
  unsigned interface_number; /**< OT95C_INTERFACE of the library that is loaded. */
  unsigned collation;        /**< Of the orders of all languages; see ot95_order_version. */
  const char* unicode; /**< Of the tables, "15.0.0". Belongs to the library, as does `cldr`. */
  const char* cldr;
  unsigned sort_key; /**< The layout of sort keys: a key is good for its own version. */
} ot95_versions;

OT95C_EXPORT int ot95_version(ot95_versions* out);
/** @} */

/** @name Types
 * @{ */

/** How C sees the values of a type: which member of `ot95_value` holds one. */
enum {
  OT95_KIND_NONE = 0,     /**< Not at all. */
  OT95_KIND_INTEGER = 1,  /**< `integer`, also booleans and the seal. */
  OT95_KIND_REAL = 2,     /**< `real`, also intervals, in seconds. */
  OT95_KIND_MOMENT = 3,   /**< `moment`. */
  OT95_KIND_IDENTITY = 4, /**< `identity`. */
  OT95_KIND_BYTES = 5,    /**< `bytes`. */
  OT95_KIND_TEXT = 6      /**< Only as text: ot95_scan and ot95_print. */
};

typedef struct ot95_type {
  size_t struct_size;
  int id;
  unsigned kind;      /**< OT95_KIND_... */
  const char* name;   /**< Belongs to the library, as does `format`. */
  const char* format; /**< Of its text, where none is given. */
  size_t memory_size; /**< Of one value in a C++ program. */
  size_t stored_size; /**< Of one value; 0 where it depends on the value. */
  size_t null_size;   /**< Of one stored null. */
  unsigned is_fixed;  /**< Whether the stored size is the same for all values. */
  unsigned is_nullable;
} ot95_type;

/** How many types there are. Identifiers are 0 to one less; the last stands for no type. */
OT95C_EXPORT int ot95_type_count(size_t* count);
/** Finds a type by its exact name. */
OT95C_EXPORT int ot95_type_by_name(const char* name, int* type);
OT95C_EXPORT int ot95_type_describe(int type, ot95_type* out);
/** @} */

/** @name Languages and code sets
 * @{ */
typedef struct ot95_language {
  size_t struct_size;
  unsigned number;
  const char* tag;  /**< "sv", "de-phonebook". Belongs to the library, as does `name`. */
  const char* name; /**< In English. */
} ot95_language;

typedef struct ot95_code_set {
  size_t struct_size;
  unsigned number;
  unsigned width;   /**< Bytes a character: 1 or 2. */
  const char* name; /**< "ISO-8859-2". Belongs to the library. */
} ot95_code_set;

/** A language by its tag, such as "sv", in any case. */
OT95C_EXPORT int ot95_language_by_tag(const char* tag, unsigned* language);
OT95C_EXPORT int ot95_language_describe(unsigned language, ot95_language* out);
/**
 * The version of the order of a language's texts. Keys that were made under another one are out of
 * order: an engine keeps it beside each index of texts and builds the index anew where it differs.
 * A language that nobody knows has the neutral one's.
 */
OT95C_EXPORT int ot95_order_version(unsigned language, uint64_t* version);
/** A code set by its name; case and punctuation don't matter. */
OT95C_EXPORT int ot95_code_set_by_name(const char* name, unsigned* code_set);
OT95C_EXPORT int ot95_code_set_describe(unsigned code_set, ot95_code_set* out);
/** @} */

/** @name Values as text
 * @{ */

/** How texts become values. */
typedef struct ot95_scan_options {
  size_t struct_size;
  unsigned code_set;  /**< Of a text that is stored; 253 is Unicode. */
  unsigned language;  /**< Its language, by number; 1 is the neutral one. */
  const char* format; /**< Null: the type's own. */
  unsigned flags;     /**< OT95_STRICT or 0. */
} ot95_scan_options;

enum {
  /** Texts are taken only if their values mean what they say: what would be wrapped, cut or made up
      is refused with OT95_ERR_VALUE. Without a format dates and times may be in ISO 8601 form. */
  OT95_STRICT = 1
};

/**
 * Stores what texts say, one element a text. "{NULL}" is the null.
 * @param options null for Unicode, the neutral language, and the type's format.
 * @return OT95_ERR_VALUE for a text from which the type reads no value, or one that the code set
 *   can't hold. What a type reads of a text is its own, numbers wrap as in C++: OT95_STRICT holds
 *   it to the text.
 */
OT95C_EXPORT int ot95_scan(int type, const ot95_span* texts, size_t count,
                           const ot95_scan_options* options, unsigned form, ot95_buffer* out);
/**
 * Prints one element in UTF-8.
 * @param format null for the type's own; texts then come whole.
 */
OT95C_EXPORT int ot95_print(const ot95_array* array, size_t index, const char* format,
                            ot95_buffer* out);
/** Whether an element is null: 1 or 0. */
OT95C_EXPORT int ot95_is_null(const ot95_array* array, size_t index, int* is_null);
/** Stores the value that a new member has; the null where the type has one and `nullable` asks. */
OT95C_EXPORT int ot95_default(int type, int nullable, unsigned form, ot95_buffer* out);
/** @} */

/** @name Values of C
 * @{ */

/** Fields of dates and times, as they are stored: not checked against the calendar. A type has
    some of them; the others are 0. A field of -1 in a date to compare with stands for any. */
typedef struct ot95_moment {
  int32_t year, month, day;
  int32_t hour, minute, second, hundredth;
  int32_t zone_hour, zone_minute; /**< Of d_Time: what hour and minute are ahead by. */
} ot95_moment;

/** Fields of identifiers and references. A type has some of them; the others are 0. */
typedef struct ot95_identity {
  uint32_t block;     /**< A hint where to look; no part of identity. */
  uint32_t low, high; /**< The serial number: bits 0 to 31, 32 to 47. */
  uint32_t database;
  uint32_t class_number, class_version; /**< References don't store the version. */
} ot95_identity;

typedef struct ot95_value {
  unsigned kind;    /**< OT95_KIND_... of the type; ot95_encode checks it. */
  unsigned is_null; /**< 1, and then the rest doesn't count; else 0. */
  union {
    int64_t integer;
    double real;
    ot95_moment moment;
    ot95_identity identity;
    ot95_span bytes; /**< Out of ot95_decode: a part of the array's own bytes. */
  } as;
} ot95_value;

/** Stores values of C. @return OT95_ERR_VALUE where the type can't hold one. */
OT95C_EXPORT int ot95_encode(int type, const ot95_value* values, size_t count, unsigned form,
                             ot95_buffer* out);
/** Reads stored values. @param values room for `array->count` of them. */
OT95C_EXPORT int ot95_decode(const ot95_array* array, ot95_value* values);
/** @} */

/** @name Stored values
 * @{ */

/** Checks that the bytes hold the array. @param end where it ends, or how far it is good: answered
    with every status but OT95_ERR_ARGUMENT and OT95_ERR_TYPE. May be null. */
OT95C_EXPORT int ot95_verify(const ot95_array* array, size_t* end);
/** Bytes of the array in a form (without flags). */
OT95C_EXPORT int ot95_size(const ot95_array* array, unsigned form, size_t* size);
/**
 * Stores the array in another form. With OT95_FORM_KEY texts become index keys, 65,534 bytes at
 * most in all; where the buffer is too small for these, it receives the key for that room.
 */
OT95C_EXPORT int ot95_translate(const ot95_array* array, unsigned form, ot95_buffer* out);
/** Stores the array as values of another type. Numbers come whole out of texts of one-byte code
   sets only: of others every character counts as a digit. */
OT95C_EXPORT int ot95_convert(const ot95_array* array, int type, unsigned form, ot95_buffer* out);
/** A member of a record: an array. */
typedef struct ot95_member {
  int type;
  size_t count; /**< Elements, at least 1. */
} ot95_member;

/**
 * Takes a record apart: arrays that stand one behind another, all in one form.
 * @param arrays receives one for each member, which points into the record.
 * @param end where the record ends, or how far it is good: answered as by ot95_verify. The next
 *   record may begin there.
 */
OT95C_EXPORT int ot95_record(const ot95_member* members, size_t member_count, unsigned form,
                             const void* bytes, size_t size, ot95_array* arrays, size_t* end);
/** @} */

/** @name Comparison
 * @{ */

/** Options of comparison; they concern texts, and the first one dates. */
enum {
  OT95_WILDCARDS = 0x10000,   /**< The second value is a pattern: ot95_match has it by itself. */
  OT95_IGNORE_CASE = 0x20,    /**< Case doesn't count. */
  OT95_IGNORE_ACCENT = 0x40,  /**< Accents don't count. */
  OT95_IGNORE_SPACE = 0x80,   /**< Spaces are skipped. */
  OT95_ORDER_ONLY = 0x100,    /**< All differences at once, from the left. */
  OT95_IGNORE_SYMBOLS = 0x200 /**< Symbols are skipped. */
};

/** Compares two arrays of one type, form and count. @param sign -1, 0 or 1. */
OT95C_EXPORT int ot95_compare(const ot95_array* a, const ot95_array* b, unsigned options,
                              int* sign);
/** Whether a value is one that the pattern means: `*` stands for any run of characters, `?` for
    one; in dates -1 for any field. @param matches 1 or 0. */
OT95C_EXPORT int ot95_match(const ot95_array* array, const ot95_array* pattern, unsigned options,
                            int* matches);
/** The 32-bit hash that databases hold. */
OT95C_EXPORT int ot95_hash(const ot95_array* array, uint32_t* hash);
/** @} */

/** @name Keys that compare as bytes
 * For stores that know no other order; docs/sort-keys.md draws them.
 * @{ */

/**
 * The key of an array. The order of keys by memcmp, the shorter first on a tie, is that of
 * ot95_compare on arrays in the same form with the same options; equal arrays have equal keys, and
 * no key is the beginning of another.
 * @return OT95_ERR_ROOM with what there is room for written: it orders as the whole key as far as
 * it goes. OT95_ERR_NOT_SUPPORTED where the comparison is no order; a not-a-number then still has a
 *   key, at one end, and `size` isn't 0.
 */
OT95C_EXPORT int ot95_sort_key(const ot95_array* array, unsigned options, ot95_buffer* out);
/**
 * The bytes between which the keys of all values lie that satisfy a relation with an operand: not
 * below `lower`, and below `upper`. A `size` of 0 stands for no such end. An end that is longer
 * than its room is cut so that the range still holds; what lies in it, ot95_compare or ot95_match
 * decides.
 * @param relation as of ot95_estimate.
 * @param key_options those that the keys were made with.
 */
OT95C_EXPORT int ot95_sort_range(const ot95_array* operand, unsigned relation, unsigned key_options,
                                 ot95_buffer* lower, ot95_buffer* upper);
/** A hash of the sort key, the same on all machines: equal under the options, equal hash. */
OT95C_EXPORT int ot95_hash64(const ot95_array* array, unsigned options, uint64_t seed,
                             uint64_t* hash);
/** @} */

/** @name Planning
 * @{ */

/** Relations, beside the options of a comparison. */
enum { OT95_EQUAL = 1, OT95_LESS = 2, OT95_GREATER = 4 };

#define OT95_KEY_ROOM 254 /**< The longest key of an index. */

typedef struct ot95_estimate_result {
  size_t struct_size;
  float share;               /**< Of the index; without its ends an amount, see
                                  docs/estimates.md. */
  unsigned stands_for_range; /**< 1 if the operand stands for a range, as a pattern does. */
  size_t lower_size;         /**< Of the key where a scan begins; 0: at the start. */
  size_t upper_size;         /**< Of the key where it ends; 0: at the end. */
  unsigned char lower[OT95_KEY_ROOM];
  unsigned char upper[OT95_KEY_ROOM];
} ot95_estimate_result;

/**
 * Estimates what of an index satisfies a relation with an operand, and where a scan has to look.
 * @param relation OT95_EQUAL, OT95_LESS, OT95_GREATER, with options; texts are patterns only with
 *   OT95_WILDCARDS.
 * @param low,high the least and the greatest key of the index, 1 to 254 bytes each; both null where
 *   they aren't known.
 */
OT95C_EXPORT int ot95_estimate(const ot95_array* operand, unsigned relation, const ot95_span* low,
                               const ot95_span* high, ot95_estimate_result* out);
/** @} */

/** @name Text without a record
 * All take texts in UTF-8, and none but ot95_collation_find allocates for texts of up to 256 bytes.
 * @{ */

/** A language and options of comparison. It doesn't change: threads may share it. */
typedef struct ot95_collation ot95_collation;

/**
 * @param tag a language such as "sv"; null or "" for the neutral one.
 * @param options of comparison, without OT95_WILDCARDS.
 * @param out to be given back by ot95_free.
 */
OT95C_EXPORT int ot95_collation_open(const char* tag, unsigned options, ot95_collation** out);
/**
 * Compares two texts. They are read as far as it takes to tell: what is behind that, or the same in
 * both, need not be UTF-8.
 * @param sign -1, 0 or 1.
 */
OT95C_EXPORT int ot95_collation_compare(const ot95_collation* collation, const char* a,
                                        size_t a_size, const char* b, size_t b_size, int* sign);
/** Whether a text matches a pattern with `*` and `?`: 1 or 0. */
OT95C_EXPORT int ot95_collation_match(const ot95_collation* collation, const char* text,
                                      size_t size, const char* pattern, size_t pattern_size,
                                      int* matches);
/** The sort key of a text; as ot95_sort_key. */
OT95C_EXPORT int ot95_collation_key(const ot95_collation* collation, const char* text, size_t size,
                                    ot95_buffer* out);
/** The bytes between which the keys of all texts lie that match a pattern; as ot95_sort_range. */
OT95C_EXPORT int ot95_collation_range(const ot95_collation* collation, const char* pattern,
                                      size_t size, ot95_buffer* lower, ot95_buffer* upper);
/** A hash that texts share which compare as equal; as ot95_hash64. */
OT95C_EXPORT int ot95_collation_hash(const ot95_collation* collation, const char* text, size_t size,
                                     uint64_t seed, uint64_t* hash);
/**
 * Finds the first stretch of whole characters that equals a text, as long as that takes: "ss" finds
 * a sharp s. An empty text is nowhere, nor is one of characters that weigh nothing. Allocates.
 * @param found 1 or 0.
 * @param place bytes before it; 0 where there is none.
 */
OT95C_EXPORT int ot95_collation_find(const ot95_collation* collation, const char* text, size_t size,
                                     const char* sought, size_t sought_size, int* found,
                                     size_t* place);
OT95C_EXPORT int ot95_collation_upper(const ot95_collation* collation, const char* text,
                                      size_t size, ot95_buffer* out);
OT95C_EXPORT int ot95_collation_lower(const ot95_collation* collation, const char* text,
                                      size_t size, ot95_buffer* out);

/** @} */

/** @name Texts changed and taken apart
 * These allocate. Places and counts are in 16-bit units.
 * @{ */

/** What of a text is changed, and how. */
typedef struct ot95_edit {
  size_t struct_size;
  int operation; /**< OT95_TRIM ... */
  ot95_span text;
  ot95_span with; /**< What is inserted, written or put in the place of `from`; one character to
                       fill with. */
  ot95_span from; /**< Of OT95_REPLACE_ALL: what is sought, by the collation's language. */
  size_t place;   /**< Where it begins, 0 to 65535. */
  size_t count;   /**< Units; OT95_REST for all behind the place. */
} ot95_edit;

enum {
  OT95_TRIM,        /**< Without the blanks at its ends. */
  OT95_CUT,         /**< Without `count` units from `place` on. */
  OT95_COPY,        /**< These alone. */
  OT95_INSERT,      /**< `with` put before `place`. */
  OT95_WRITE,       /**< `with` written over what stands at `place`, no further than the end. */
  OT95_REPLACE_ALL, /**< Every `from` behind `place` becomes `with`. */
  OT95_FILL,        /**< `count` times `with`, and nothing else. */
  OT95_EXPAND       /**< Made `count` units long by `with` at its end. */
};

#define OT95_REST ((size_t)-1)

/** Gives a text that is made from another one. */
OT95C_EXPORT int ot95_collation_edit(const ot95_collation* collation, const ot95_edit* edit,
                                     ot95_buffer* out);
/**
 * Gives the next item of a list, trimmed. A separator at the very start is passed over; elsewhere
 * two in a row enclose an empty item.
 * @param place 0 for the first item; moves behind the item with OT95_OK only.
 * @return OT95_ERR_ENDS where there is none.
 */
OT95C_EXPORT int ot95_collation_split(const ot95_collation* collation, const char* text,
                                      size_t size, const char* separator, size_t separator_size,
                                      size_t* place, ot95_buffer* out);

/** What of a text counts at one place: docs/orders.md draws the words. */
typedef struct ot95_order {
  unsigned word;
  unsigned script; /**< Ranks alphabets against each other. */
  uint32_t key;    /**< Both in the order of comparison. */
} ot95_order;

/** The order words of a text. @param count how many there are, also with OT95_ERR_ROOM, where
    `orders` holds the first. */
OT95C_EXPORT int ot95_collation_orders(const ot95_collation* collation, const char* text,
                                       size_t size, ot95_order* orders, size_t room, size_t* count);
/** @} */

/** @name Arithmetic
 * @{ */

enum {
  OT95_ADD,
  OT95_SUBTRACT,
  OT95_MULTIPLY,
  OT95_DIVIDE,    /**< Truncates toward zero. */
  OT95_REMAINDER, /**< Has the sign of the dividend. */
  OT95_SHIFT_LEFT,
  OT95_SHIFT_RIGHT, /**< Keeps the sign. */
  OT95_NEGATE,      /**< Of `a`; `b` doesn't count. */
  OT95_ABSOLUTE
};

/**
 * 64-bit arithmetic as the system does it.
 * @param result receives what is left modulo 2^64 also with OT95_ERR_VALUE, which says that the
 *   number itself is beyond 64 bits.
 * @return OT95_ERR_ARGUMENT for a divisor of 0 and a shift by a negative number.
 */
OT95C_EXPORT int ot95_int64(int operation, int64_t a, int64_t b, int64_t* result);
/** The whole part by way of seven decimal digits, rounded; cut at plus and minus 2^63 - 1. */
OT95C_EXPORT int ot95_int64_from_real(double real, int64_t* result);

/**
 * Adds to a date or time: days to OtDate and d_Date, seconds to the others.
 * @param type of these six. @return OT95_ERR_VALUE where the type or C can't hold the moment.
 */
OT95C_EXPORT int ot95_moment_add(int type, const ot95_moment* moment, int32_t amount,
                                 ot95_moment* result);
/** What lies between two: days of OtDate, seconds of OtTime and d_Time; other types have no such
    operation. */
OT95C_EXPORT int ot95_moment_difference(int type, const ot95_moment* a, const ot95_moment* b,
                                        double* difference);
/** Whether two spans of time, each of a first and a last moment, share any: 1 or 0. Of d_Date,
   d_Time and d_Timestamp. */
OT95C_EXPORT int ot95_moment_overlaps(int type, const ot95_moment a[2], const ot95_moment b[2],
                                      int* overlaps);

enum {
  OT95_DAY_NUMBER,    /**< Of OtDate: as ot95_moment_of_day takes it. */
  OT95_WEEKDAY,       /**< Of OtDate and d_Date: 0 for Sunday to 6. */
  OT95_DAY_OF_YEAR,   /**< Of d_Date, from 1. */
  OT95_DAYS_IN_MONTH, /**< Of d_Date. */
  OT95_IS_DATE        /**< Of OtDate: 1 if it is in the calendar. */
};

/** Answers a question of the calendar. */
OT95C_EXPORT int ot95_moment_ask(int type, int question, const ot95_moment* moment,
                                 int32_t* answer);
/** The OtDate of a day number. */
OT95C_EXPORT int ot95_moment_of_day(int32_t day, ot95_moment* result);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
