ActiveRecordsView {
    objectName: "publications"
    kind: "publication"
    name: "Publications"
    symbol: "globe"
    titleHead: "PUBLICATION"
    targetHead: "SERVES"
    addressHead: "ADDRESS"
    addressWidth: 240
    copyHelp: "Copy the address"
    retryHelp: "Retry — restart this publication"
}
