// What /etc/tavlyn/tavlynd.toml says; keys.cpp has a row for each.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tavlyn::agent {

inline constexpr const char* kProgram = "tavlynd";
inline constexpr const char* kSettingsFile = "/etc/tavlyn/tavlynd.toml";

struct Settings {
  using Number = std::int64_t;
  using Words = std::vector<std::string>;

  // [broker]
  std::string url;
  std::string user;
  std::string password;
  std::string passwordFile;
  std::string clientId;
  std::string ca;
  std::string certificate;
  std::string certificateKey;
  std::string leastTls = "1.2";
  bool plain = false;
  Number keepAlive = 30;  // s
  Number window = 20;     // messages

  // [topics]
  std::string prefix = "tavlyn";
  std::string site = "site";
  std::string host;

  // [devices]
  Words usb = {"reader", "magstripe", "sonar"};
  Words serial;    // "com3", "com3:ascii"
  Words ethernet;  // "10.0.0.5:10001"
  Number baud = 9600;
  Number interval = 250;  // ms

  // [publish]
  std::string ids = "plain";
  std::string siteKey;

  // [commands]
  Words allowed = {"beep", "led"};
  Number rate = 60;         // a minute
  Number largestFile = 64;  // KiB

  // [spool]
  std::string spool = "/var/lib/tavlynd/spool.db";
  Number days = 7;
  Number megabytes = 64;

  bool operator==(const Settings&) const = default;
};

}  // namespace tavlyn::agent
