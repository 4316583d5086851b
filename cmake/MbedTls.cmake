# libmbedcrypto brings neither a CMake package nor a pkg-config file in 2.28.
find_library(MBEDCRYPTO_LIBRARY mbedcrypto REQUIRED)
find_path(MBEDCRYPTO_INCLUDE mbedtls/sha256.h REQUIRED)
add_library(mbedcrypto UNKNOWN IMPORTED)
set_target_properties(mbedcrypto PROPERTIES
  IMPORTED_LOCATION ${MBEDCRYPTO_LIBRARY}
  INTERFACE_INCLUDE_DIRECTORIES ${MBEDCRYPTO_INCLUDE})
