# What `cmake --install` puts where; docs/installing.md tells it to people. Components:
#   switch       the agent, its doctor, and what starts the agent; built with PLATFORM_LIBRARY
#   judge        the judge of that platform library
#   workstation  the simulated switch and the lab cloud
#   vendor       what a platform library is written against
#   doc          the pages for people
include(GNUInstallDirs)

set(VX_PLATFORM_SERVICES "" CACHE STRING
    "Services of the firmware, as init scripts name them, after which the agent starts")
list(TRANSFORM VX_PLATFORM_SERVICES REPLACE "(.+)" " \\1.service" OUTPUT_VARIABLE VX_PLATFORM_UNITS)
list(TRANSFORM VX_PLATFORM_SERVICES PREPEND " ")
list(JOIN VX_PLATFORM_UNITS "" VX_PLATFORM_UNITS)
list(JOIN VX_PLATFORM_SERVICES "" VX_PLATFORM_SERVICES)

set(made ${CMAKE_BINARY_DIR}/installed)
set(shared ${CMAKE_INSTALL_DATADIR}/vx_cloud)
set(man ${CMAKE_SOURCE_DIR}/docs/man)

# vx_install_pages(<component> <page> [<name>...]): a manual page, under each further name, too.
function(vx_install_pages component page)
  cmake_path(GET page EXTENSION LAST_ONLY section)
  string(SUBSTRING ${section} 1 -1 section)
  foreach(name IN ITEMS ${page} ${ARGN})
    install(FILES ${man}/${page} RENAME ${name} COMPONENT ${component}
            DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section})
  endforeach()
endfunction()

# vx_install_scripts(<component> <folder> PROGRAMS <script>... [MODULES <script>...]): scripts of tools/
# beside a places.py that knows the installed tree from there.
function(vx_install_scripts component folder)
  cmake_parse_arguments(PARSE_ARGV 2 scripts "" "" "PROGRAMS;MODULES")
  list(TRANSFORM scripts_PROGRAMS PREPEND ${CMAKE_SOURCE_DIR}/tools/)
  list(TRANSFORM scripts_MODULES PREPEND ${CMAKE_SOURCE_DIR}/tools/)
  foreach(kind IN ITEMS BINDIR INCLUDEDIR DATADIR)
    file(RELATIVE_PATH ${kind} ${CMAKE_INSTALL_PREFIX}/${folder}
         ${CMAKE_INSTALL_FULL_${kind}})
  endforeach()
  configure_file(${CMAKE_SOURCE_DIR}/packaging/workstation/places.py.in
                 ${made}/${folder}/places.py @ONLY)
  install(FILES ${made}/${folder}/places.py ${scripts_MODULES} DESTINATION ${folder}
          COMPONENT ${component})
  install(PROGRAMS ${scripts_PROGRAMS} DESTINATION ${folder} COMPONENT ${component})
endfunction()

# vx_install_command(<component> <name> <script>): a script under the name of a command.
function(vx_install_command component name script)
  file(RELATIVE_PATH target ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_PREFIX}/${script})
  file(MAKE_DIRECTORY ${made}/bin)
  file(CREATE_LINK ${target} ${made}/bin/${name} SYMBOLIC)
  install(FILES ${made}/bin/${name} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${component})
endfunction()

# vx_install_made(<component> <template> <folder>): a file that knows where others lie.
function(vx_install_made component template folder)
  cmake_path(GET template STEM LAST_ONLY name)
  configure_file(${CMAKE_SOURCE_DIR}/packaging/${template} ${made}/${component}/${name} @ONLY)
  install(FILES ${made}/${component}/${name} DESTINATION ${folder} COMPONENT ${component} ${ARGN})
endfunction()

# --- The switch.

if(PLATFORM_LIBRARY)
  install(TARGETS vx_cloud vx_cloud_doctor DESTINATION ${CMAKE_INSTALL_SBINDIR} COMPONENT switch)
  install(TARGETS platform_judge DESTINATION ${CMAKE_INSTALL_SBINDIR} COMPONENT judge)
  configure_file(packaging/switch/vx_cloud.init.in ${made}/vx_cloud @ONLY)
  install(PROGRAMS ${made}/vx_cloud COMPONENT switch
          DESTINATION ${CMAKE_INSTALL_FULL_SYSCONFDIR}/init.d)
  vx_install_made(switch switch/vx_cloud.service.in lib/systemd/system)
  vx_install_pages(switch vx_cloud.8)
  vx_install_pages(switch vx_cloud_doctor.1)
  vx_install_pages(judge platform_judge.1)
endif()

# --- The workstation.

if(VX_WORKSTATION AND NOT CMAKE_CROSSCOMPILING)
  install(TARGETS lab_cloud cloud_judge vx_cloud_sim vx_cloud_doctor_sim platform_judge_sim
          DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT workstation)
  vx_install_scripts(workstation ${shared} PROGRAMS run.py make_image.py
                     MODULES story.py workbench.py wire_schema.py)
  vx_install_command(workstation vx_cloud_run ${shared}/run.py)
  vx_install_command(workstation vx_cloud_make_image ${shared}/make_image.py)
  file(GLOB schemas CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/docs/schema/*.schema.json)
  install(FILES ${schemas} DESTINATION ${shared}/schema COMPONENT workstation)
  foreach(page IN ITEMS lab_cloud cloud_judge vx_cloud_sim vx_cloud_run vx_cloud_make_image)
    vx_install_pages(workstation ${page}.1)
  endforeach()
  install(FILES ${man}/vx_cloud_doctor.1 RENAME vx_cloud_doctor_sim.1 COMPONENT workstation
          DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES ${man}/platform_judge.1 RENAME platform_judge_sim.1 COMPONENT workstation
          DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()

# --- Those who write a platform library.

install(DIRECTORY platform driver DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vx_cloud
        COMPONENT vendor FILES_MATCHING PATTERN "*.h")
# Files for pkg-config tell where they lie themselves, so that the tree may be moved.
file(RELATIVE_PATH PC_TO_INCLUDE ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
     ${CMAKE_INSTALL_FULL_INCLUDEDIR})
vx_install_made(vendor vendor/vx_cloud.pc.in ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
vx_install_scripts(vendor ${shared}/vendor PROGRAMS null_platform.py)
vx_install_command(vendor vx_cloud_null_platform ${shared}/vendor/null_platform.py)
vx_install_pages(vendor vx_cloud_null_platform.1)
install(DIRECTORY examples/twelve_ports COMPONENT vendor
        DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)

# What a platform library is linked with on a workstation: one archive a program.
if(VX_WORKSTATION AND NOT CMAKE_CROSSCOMPILING)
  foreach(archive IN ITEMS vx_cloud_agent vx_cloud_doctor vx_platform_judge)
    vx_install_made(vendor vendor/${archive}.pc.in ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
    install(TARGETS ${archive}_archive DESTINATION ${CMAKE_INSTALL_LIBDIR}
            COMPONENT vendor)
  endforeach()
  install(TARGETS null_platform DESTINATION ${CMAKE_INSTALL_LIBDIR}/vx_cloud COMPONENT vendor)
endif()

# --- Pages for people, in the tree that their links know.

install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc
        PATTERN "man" EXCLUDE)
install(FILES lab/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR}/lab COMPONENT doc)
