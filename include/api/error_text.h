/** @file
 * Error words in words. All of it is in this header: the library exports nothing for it. */
#ifndef TAVLYN_API_ERROR_TEXT_H
#define TAVLYN_API_ERROR_TEXT_H

#include <stddef.h>

#include "types.h"

/** @def TAVLYN_INLINE
 * A function that a program may leave unused. */
#if defined(__cplusplus)
#define TAVLYN_INLINE inline
#else
#define TAVLYN_INLINE static inline
#endif

/* clang-format off */
/* table room */
#define TAVLYN_ERROR_TEXT_SIZE 512 /**< Room for the text of any word, in bytes. */
/* end */
/* clang-format on */

/** A word is in a sum of several if the sum has these bits under this mask. */
struct tavlyn_error_row {
  uint32_t mask;     /**< The bits to look at. */
  uint32_t found;    /**< What they are. */
  const char* words; /**< What that means. */
};

/** The table of what is found in error words. Its last row is for words of which no other row says anything.
 * @param count receives the number of rows.
 * @return The first row. */
TAVLYN_INLINE const struct tavlyn_error_row* tavlyn_error_rows(size_t* count) {
  static const struct tavlyn_error_row rows[] = {
      /* clang-format off */
/* table texts */
      {0xFFFFFFFFu, 0x0u, "the library names no reason; the device refused, or its answer was none"},
      {0xFFFFFFFFu, 0x1u, "no room was given for separator data"},
      {0xFFFFFFFFu, 0x2u, "the separator data has not been read"},
      {0xFFFu, 0x100u, "the room for an ID is too small"},
      {0xFFFu, 0x101u, "the port is not open"},
      {0xFFFu, 0x105u, "the answer could not be understood"},
      {0xFFCu, 0x200u, "a report could not be sent"},
      {0x10000u, 0x10000u, "a search failed"},
      {0x20000u, 0x20000u, "a read of the configuration failed"},
      {0x3F1FFFu, 0x20001u, "a user field was not transferred"},
      {0x40000u, 0x40000u, "a write of the configuration failed"},
      {0x80000u, 0x80000u, "a reset or a save of defaults was not sent"},
      {0x3F1FFFu, 0x100000u, "a record was not got"},
      {0x3F1FFFu, 0x100001u, "no room was given for a record"},
      {0x3F1FFFu, 0x100002u, "the configuration has not been read"},
      {0x3F1FFFu, 0x200000u, "a record was not set"},
      {0x3F1FFFu, 0x200001u, "no record was given"},
      {0xFFFF00u, 0x201000u, "a value is out of its range"},
      {0x81000000u, 0x1000000u, "the device did not answer"},
      {0x2000000u, 0x2000000u, "a halt of the keystrokes was not sent"},
      {0x4000000u, 0x4000000u, "the card analyzer failed"},
      {0xF0000000u, 0x20000000u, "an extension could not be set"},
      {0xF0000000u, 0x30000000u, "what the reader keeps for its BLE radio was not transferred"},
      {0xF0000000u, 0x40000000u, "an extension could not be asked"},
      {0xF0000000u, 0x50000000u, "the firmware file name could not be read"},
      {0xF0000000u, 0x60000000u, "the device is gone"},
      {0xF0000000u, 0x70000000u, "the firmware version could not be read"},
      {0xF0000000u, 0x80000000u, "an item was not transferred"},
      {0xF0000000u, 0x90000000u, "a file failed its integrity test"},
      {0x0u, 0x0u, "several failures, whose numbers have joined"},
/* end */
      /* clang-format on */
  };
  *count = sizeof rows / sizeof rows[0];
  return rows;
}

/** Copies as much of a text as there is room for to a place in a buffer.
 * @param text the text.
 * @param buffer where it goes.
 * @param room bytes in buffer.
 * @param place where the text begins, which may be beyond the buffer.
 * @return The place after the text. */
TAVLYN_INLINE size_t tavlyn_add_text(const char* text, char* buffer, size_t room, size_t place) {
  for (; *text != '\0'; ++text, ++place) {
    if (place < room) buffer[place] = *text;
  }
  return place;
}

/** Says what an error word means: what was done and what went wrong, "a report could not be sent; the device
 * did not answer". After a connect that found nothing the word is 0, for which this can only say that the
 * library names no reason: there the program itself knows more.
 * @param word what GetLastLibErr() has returned, of one failure or of several.
 * @param buffer receives the text and a terminator; null counts as no room.
 * @param size room in buffer in bytes; TAVLYN_ERROR_TEXT_SIZE is enough. A text that is cut ends in three
 *   dots.
 * @return buffer; without any room the first part of the text, which is a constant. Never null. */
TAVLYN_INLINE const char* tavlyn_error_text(uint32_t word, char* buffer, size_t size) {
  size_t count;
  const struct tavlyn_error_row* rows = tavlyn_error_rows(&count);
  const size_t room = buffer ? size : 0;
  const char* first;
  size_t length;
  size_t at = 0;
  while (at < count - 1 && (word & rows[at].mask) != rows[at].found) ++at;
  first = rows[at].words;
  length = tavlyn_add_text(first, buffer, room, 0);
  for (++at; at < count - 1; ++at) {
    if ((word & rows[at].mask) != rows[at].found) continue;
    length = tavlyn_add_text("; ", buffer, room, length);
    length = tavlyn_add_text(rows[at].words, buffer, room, length);
  }
  if (room == 0) return first;
  if (length >= room) {
    length = room - 1;
    if (length > 3) tavlyn_add_text("...", buffer, room, length - 3);
  }
  buffer[length] = '\0';
  return buffer;
}

#endif
