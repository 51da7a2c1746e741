# The Python package where Debian's Python looks, with what package managers and pytest read of it, as in the wheels
# (scripts/wheel): it is told once, in pyproject.toml.
set(modules lib/python3/dist-packages)
install(DIRECTORY bindings/python/src/tavlynapi DESTINATION ${modules} COMPONENT python
  FILES_MATCHING PATTERN *.py PATTERN py.typed PATTERN __pycache__ EXCLUDE PATTERN lib EXCLUDE)

set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS bindings/python/pyproject.toml)
file(READ bindings/python/pyproject.toml project)
foreach(key name description requires-python)
  string(REGEX MATCH "\n${key} = \"([^\"]*)\"" found "${project}")
  set(${key} "${CMAKE_MATCH_1}")
endforeach()
string(REGEX MATCH "entry-points\\.pytest11\\]\n${name} = \"([^\"]*)\"" found "${project}")
set(about ${CMAKE_CURRENT_BINARY_DIR}/${name}-${PROJECT_VERSION}.dist-info)
file(CONFIGURE OUTPUT ${about}/METADATA CONTENT "Metadata-Version: 2.1
Name: ${name}
Version: ${PROJECT_VERSION}
Summary: ${description}
License: MIT
Requires-Python: ${requires-python}
")
file(CONFIGURE OUTPUT ${about}/entry_points.txt CONTENT "[pytest11]\n${name} = ${CMAKE_MATCH_1}\n")
install(DIRECTORY ${about} DESTINATION ${modules} COMPONENT python)
