/** @mainpage
 * tavlynapi: card readers, a magnetic-stripe reader and a sonar sensor, from plain C.
 *
 * The library holds the devices it has found in a table; nearly every call works on the active one, see
 * SetActDev(). A program connects, reads, and disconnects:
 * @code
 * uint8_t id[8];
 * SetConnectProduct(1); // card readers
 * SetDevTypeSrch(0);    // on USB; all products on all links take a while
 * if (USBConnect(NULL) == 1) {
 *   uint16_t bits = GetActiveID(id, sizeof id); // 0: no card
 *   USBDisconnect();
 * }
 * @endcode
 *
 * @par Results
 * Unless a comment says otherwise a call returns 1 for success and 0 for failure. "Unsupported" means the
 * value set by SetUnsupportedProductErrorCode(), 0 after load, which is returned when no device is active or
 * the active one has no such operation. GetLastLibErr() says why a call failed, in the TAVLYN_ERR_ words of
 * types.h, and tavlyn_error_text() says it in words.
 *
 * @par Products
 * A comment says what a call does with a card reader, or with the product that its header is about. What it
 * does with other products is in one table, docs/products.md.
 *
 * @par Threads
 * USBConnect(), USBDisconnect(), GetActiveID(), GetActiveID32(), ReadCfg(), WriteCfg() and BeepNow() lock
 * the library for their whole run; ComConnect() and ComConnectPort() do so for each configuration that they
 * read. No other call does, unless it includes one of these: do not make such calls from several threads at
 * the same time. docs/threads.md lists what may overlap.
 *
 * @par Memory
 * Texts that the library returns belong to it and are valid until the next call of the same kind.
 *
 * @par Traffic
 * The bytes that a call sends are given in hexadecimal, without the report ID. "Reports" are HID feature
 * reports; a command and its reply are two of them. Over a serial link the same command travels in a frame.
 */
#ifndef TAVLYN_API_H
#define TAVLYN_API_H

/** @file
 * The whole interface. */
#include "api/accessors.h"
#include "api/active_id.h"
#include "api/connect.h"
#include "api/error_text.h"
#include "api/extensions.h"
#include "api/files.h"
#include "api/identity.h"
#include "api/links.h"
#include "api/magstripe.h"
#include "api/outputs.h"
#include "api/raw.h"
#include "api/reader.h"
#include "api/records.h"
#include "api/secure.h"
#include "api/sonar.h"
#include "api/types.h"

#endif
