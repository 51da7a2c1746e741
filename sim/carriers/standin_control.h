// How a test program talks to a stand-in for a system library that serves simulated devices. Each stand-in
// exports both functions with C linkage and undecorated names; a program finds them in the stand-in that its
// own process has loaded (GetProcAddress, dlsym), so that it never loads a second copy.
//
// A command is one line of words. Numbers are decimal unless shown as hexadecimal.
//
//   plug DEVICE            a new device at the end of the rack; the reply is its number, from 1
//                          DEVICE: reader, or plus:COUNT (a reader of 2 to 11 configurations), either one
//                          followed by @VID:PID in hexadecimal: reader@19E5:2021. As 7A31:3BFB it numbers
//                          its reports, queues input reports and has a keyboard beside it. magstripe and
//                          sonar, which also take @VID:PID, are a magnetic-stripe reader and a sonar sensor.
//                          With @com3 the reader is on a serial port, with @com3:ascii it speaks text there,
//                          with @127.0.0.1:10001 it is behind an Ethernet adapter, with @bulk behind the
//                          endpoints of a bulk device: not a HID device, so only carriers of such lines show
//                          it. Its serial number and LUID are made from its number, or given after commas:
//                          plus:2@com3,serial=0400999999,luid=7
//   unplug                 takes the device away; programs that have it open see it gone
//   replug                 the same device is there again, with what it keeps without power
//   card HEX:BITS          places a card on the reader, lowest byte first: card 0102:13
//   take                   takes the card away
//   input HEX              queues an input report, with its report ID first if the device numbers them
//   swipe %T1?;T2?+T3?     swipes a card through a magnetic-stripe reader: any of its three tracks, as they
//                          are printed, each with its sentinels: swipe %B12^DOE/JOHN^?;12=34?
//   range INCHES           somebody stands that far from a sonar sensor
//   walk FROM:TO:MS …      somebody walks in front of it, leg by leg, and stays at the end
//   queue HEX[:HEX]        queues an ID, lowest byte first, with the eight bytes that come after an ID
//   sample TYPE:HEX:BITS   a record of the card analyzer, its type hexadecimal: sample 0001:01020303:26
//   lack HEX               the firmware does not have the commands that begin with these bytes
//   seen                   the reply is one line for each thing that a person saw or heard of the reader:
//                          "leds green" (off, red, green, red+green, automatic: the reader's own), "relay
//                          on", "beeper off", "beep 2 short"; on its outputs only what changed
//   refuse N               the Nth feature-report exchange from here on is refused; on a line the Nth byte,
//                          in either direction, is lost
//   garble N               its bits arrive inverted
//   drop N                 a command is accepted but not run; a fetch returns nothing
//   late N                 the fetch, or that of the command, returns the previous reply
//   vanish N               the device is gone from then on
//   delay MS               lines: the device waits this long before each answer
//   slow MS                lines: answers come byte by byte, this far apart
//   cut N                  lines: cut after the device's next N bytes; they can be opened again
//   flood N                lines: the device sends N bytes of noise
//   heal                   forgets every fault, a vanished device is back, and exchanges count from 0 again
//   exchanges              the reply is the number of exchanges since the device was plugged in or healed
//   traffic                the reply is one line for each exchange, with the number of the interface that it
//                          went to and trailing zeros left out: "set 1 80", "get 1 01 02", "set 1 80
//                          refused", with report ID 1 "set 2 [1] 80"; for a line, what was carried at once,
//                          as the host sees it: "write FA", "read 04 01 00"
//   clear                  forgets the traffic
//   record on|off          whether exchanges of all devices join the traffic; on at first
//   list                   the reply is one line for each device present: number, VID:PID or line, its DEVICE
//   reset                  takes every device away and counts from 1 again
//   help                   the reply is one line for each command
//
// "#NUMBER" before a command names the device: "#2 card 0102:26". Without it the command is for the device
// plugged in last.
#pragma once

#include <cstddef>

#define TAVLYN_STANDIN "tavlyn_standin"
#define TAVLYN_STANDIN_MARKER "tavlyn_standin_marker"

// Runs a command. The reply is cut to fit and always ends in a NUL; the result is its full length, so that a
// caller can ask again with more room. Below 0 the command failed and the reply says why.
using TavlynStandin = int (*)(const char* command, char* reply, std::size_t size);

// The file name of the library that it stands in for. If this function is found, the stand-in was loaded and
// not the system's own library.
using TavlynStandinMarker = const char* (*)();
