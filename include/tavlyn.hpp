/// @file
/// The library for C++17 and later, in headers alone.
///
///     auto reader = tavlyn::connect();
///     for (const tavlyn::card_id& card : reader.cards()) std::cout << card.hex() << '\n';
///
/// Names are written as in the standard library. A failure is an exception, tavlyn::error; that there is no
/// card is none, but an empty std::optional.
#ifndef TAVLYN_HPP
#define TAVLYN_HPP

#include "tavlyn/config.hpp"
#include "tavlyn/connect.hpp"
#include "tavlyn/connection.hpp"
#include "tavlyn/device.hpp"
#include "tavlyn/fields.hpp"
#include "tavlyn/files.hpp"
#include "tavlyn/magstripe.hpp"
#include "tavlyn/reader.hpp"
#include "tavlyn/sonar.hpp"
#include "tavlyn/stream.hpp"
#include "tavlyn/values.hpp"

#endif
