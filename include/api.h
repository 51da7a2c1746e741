/* tavlynapi: card readers, a magnetic-stripe reader and a sonar sensor, from plain C.
 *
 * The library holds the devices it has found in a table; nearly every call works on the active one
 * (SetActDev). A program connects, reads, and disconnects:
 *
 *     uint32_t did;
 *     uint8_t id[8];
 *     if (USBConnect(&did)) {
 *       uint16_t bits = GetActiveID(id, sizeof id);   // 0: no card
 *       USBDisconnect();
 *     }
 *
 * Results. Unless a comment says otherwise a call returns 1 for success and 0 for failure; "unsupported"
 * stands for the value set by SetUnsupportedProductErrorCode (0 after load), returned when no device is
 * active or the active one has no such operation. Why a call failed is told by GetLastLibErr in the words
 * TAVLYN_ERR_ of api/types.h.
 *
 * Threads. USBConnect, USBDisconnect, GetActiveID, GetActiveID32, ReadCfg, WriteCfg and BeepNow lock the
 * library for their whole run; ComConnect and ComConnectPort do for each configuration that they read. No
 * other call does, but where one of these is a part of it: do not overlap them from several threads.
 *
 * Memory. Text pointers that the library returns are its own and hold until the next like call.
 *
 * Wire notation. "reports" counts HID feature reports, a command and a reply being two; bytes are
 * hexadecimal, without the report ID.
 */
#ifndef TAVLYN_API_H
#define TAVLYN_API_H

#include "api/accessors.h"
#include "api/active_id.h"
#include "api/connect.h"
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
