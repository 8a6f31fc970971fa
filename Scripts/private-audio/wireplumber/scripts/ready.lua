-- Says in the log when the metadata of the defaults are there and bound. A client that binds them
-- at the moment of their birth and leaves makes PipeWire keep every later change from all others
-- (a pending reply of the exporter's is then never counted off), so that nobody may probe for them.
local metadata = ObjectManager {
    Interest { type = "metadata", Constraint { "metadata.name", "=", "default" } }
}
metadata:connect("object-added", function()
    Log.warning("The default metadata are ready")
end)
metadata:activate()
-- Kept from the collector.
ready = metadata
