// Finding sonar sensors.
#pragma once

namespace tavlyn::sonar {

bool SearchSensors();

}  // namespace tavlyn::sonar
