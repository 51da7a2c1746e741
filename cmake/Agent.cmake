# What comes with tavlynd: its unit, who may use its devices, and what a broker lets it do.
install(FILES packaging/agent/tavlynd.service DESTINATION lib/systemd/system COMPONENT agent)
install(FILES packaging/agent/tavlynd.sysusers DESTINATION lib/sysusers.d RENAME tavlynd.conf COMPONENT agent)
install(FILES packaging/agent/71-tavlynd.rules DESTINATION lib/udev/rules.d COMPONENT agent)
install(FILES packaging/agent/mosquitto.acl DESTINATION ${CMAKE_INSTALL_DATADIR}/tavlynapi COMPONENT agent)
