# Run by `cmake --install`: the installed configuration files name the data
# beside them, not the build tree they were written in.
#   -DBUILD_DATA=... -DINSTALLED_DATA=...
file(GLOB configs "${INSTALLED_DATA}/*.conf" "${INSTALLED_DATA}/*.ini")
foreach(config ${configs})
  file(READ "${config}" text)
  string(REPLACE "${BUILD_DATA}" "${INSTALLED_DATA}" text "${text}")
  file(WRITE "${config}" "${text}")
  message(STATUS "Pointed ${config} at ${INSTALLED_DATA}")
endforeach()
