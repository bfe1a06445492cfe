# Run by `cmake --install`: what has to lie where the system looks for it, whatever the prefix, or names a place
# under the prefix that is known only now.

set(prefix ${CMAKE_INSTALL_PREFIX})
if(prefix STREQUAL "/usr")
    set(configuration /etc)
else()
    set(configuration ${prefix}/etc)
endif()
# The system's own prefixes share one folder of actions.
if(prefix MATCHES "^/usr(/local)?$")
    set(actions /usr/share/polkit-1/actions)
else()
    set(actions ${prefix}/share/polkit-1/actions)
endif()

if(NOT CMAKE_INSTALL_COMPONENT OR CMAKE_INSTALL_COMPONENT STREQUAL "removal-helper")
    set(LIBEXEC ${prefix}/libexec)
    configure_file(${HELPER}/com.tessellar.app.removal-helper.service.in
        ${GENERATED}/com.tessellar.app.removal-helper.service @ONLY)
    file(INSTALL DESTINATION ${prefix}/lib/systemd/system FILES
        ${GENERATED}/com.tessellar.app.removal-helper.service
        ${HELPER}/com.tessellar.app.removal-helper.socket)
    file(INSTALL DESTINATION ${actions} FILES ${HELPER}/com.tessellar.app.removal-helper.policy)
endif()
if(NOT CMAKE_INSTALL_COMPONENT)
    file(INSTALL DESTINATION ${configuration}/xdg/autostart RENAME com.tessellar.app.desktop
        FILES ${CMAKE_CURRENT_LIST_DIR}/com.tessellar.app.autostart.desktop)
endif()
